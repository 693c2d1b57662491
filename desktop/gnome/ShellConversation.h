#pragma once

#include "desktop/bus/SessionBus.h"

#include <QList>
#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace kestrin::desktop {

/// What the shell's object is called by, apart from its owner.
struct ShellMethod {
    QByteArray path;
    QByteArray interface;
    const char *member;
};

/// A conversation with the GNOME shell on a connection of its own, until the shell leaves. It costs no
/// wake-up while the shell says nothing. Main thread only.
class ShellConversation : public QObject {
    Q_OBJECT

  public:
    /// Called with the answer, which is no error.
    using Reader = std::function<void(sd_bus_message *)>;
    using Writer = SessionBus::Writer;

    /// Begins a conversation with whoever owns all of these names, of which the first is the shell's own.
    /// False when there is nobody, it is not one and the same, or not the compositor of this session.
    bool open(const QList<QByteArray> &names, const foundation::Deadline &deadline);
    bool isOpen() const { return m_bus != nullptr; }
    void close();
    /// Closes it and tells that: whoever listens would wait in vain.
    void giveUp();

    /// After `follow` the signals of this interface are told.
    void hear(const QByteArray &interfaceName);
    void follow() { m_isFollowed = true; }

    /// Whether there was an answer other than an error. When there was none in time it is given up:
    /// whatever comes later must not be taken for the answer to another question.
    bool ask(const ShellMethod &method, const foundation::Deadline &deadline, const Reader &read,
             const Writer &write = nothing);

  Q_SIGNALS:
    /// From the event loop; what comes together is told once.
    void told();
    /// From the event loop, and closed: the shell, one of its names or the bus has gone, or it was given up.
    void left();

  private:
    static bool nothing(sd_bus_message * /*message*/) { return true; }
    bool askMember(const BusMethod &method, const foundation::Deadline &deadline, const Reader &read,
                   const Writer &write);
    QByteArray ownerOf(const QByteArray &name, const foundation::Deadline &deadline);
    bool isOwnerHere(const foundation::Deadline &deadline);
    void handOut();
    void lookSoonForMore();
    void tellSoon(bool &what);
    void tell();

    std::unique_ptr<SessionBus> m_bus;
    std::unique_ptr<QSocketNotifier> m_readable;
    QByteArray m_owner;
    bool m_isFollowed = false;
    bool m_hasTold = false;
    bool m_hasLeft = false;
};

} // namespace kestrin::desktop
