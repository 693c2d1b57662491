// What the sources of windows that speak Wayland have in common.
#pragma once

#include "desktop/sources/WindowSource.h"

#include <QByteArray>

#include <list>
#include <memory>
#include <string_view>

struct wl_message;
struct wl_proxy;
union wl_argument;

namespace kestrin::desktop {

class WaylandConnection;

/// What an event means for the window that it is about.
enum class WindowNews {
    nothing,
    fact,     ///< counts at once, in a window that is complete
    pending,  ///< counts once the window is complete again
    complete, ///< everything that there is to know for now has been told
    gone,
};

/// A text from the compositor, who may write anything: at most 1 KiB of it, and what is no UTF-8 becomes
/// replacement characters.
QString waylandText(const wl_argument &argument);

/// Follows the windows that a manager object of the compositor announces: each is an object of its own, which
/// tells of itself, and is told about here once it is complete. At most 2,000 are followed; those beyond are
/// let go at once. Titles are not even looked at.
class WaylandWindowSource : public WindowSource {
    Q_OBJECT

  public:
    ~WaylandWindowSource() override;

    bool open(const foundation::Deadline &deadline) override;
    bool isOpen() const override;
    std::optional<QList<SourceWindow>> windows(const foundation::Deadline &deadline) override;
    /// Asks them all, also those that do not count.
    bool close(const QList<SourceWindow> &windows, const foundation::Deadline &deadline) override;

  protected:
    /// `display` as for waylandSocketPath.
    explicit WaylandWindowSource(const QByteArray &display);

    /// Null when closed.
    WaylandConnection *connection() const { return m_connection.get(); }

    /// Whether a compositor that has no manager object is asked again without a new connection for each time:
    /// to a compositor, those are clients that come and go.
    virtual bool asksAgainInTheSameConversation() const { return true; }
    /// A conversation has begun.
    virtual void begun() {}
    /// The manager object; null when the compositor has none, or does not answer.
    virtual wl_proxy *bindManager(WaylandConnection &connection, const foundation::Deadline &deadline) = 0;
    virtual void takeManagerEvent(wl_proxy *manager, std::string_view event,
                                  const wl_argument *arguments) = 0;
    virtual WindowNews takeWindowEvent(std::string_view event, const wl_argument *arguments,
                                       SourceWindow &window) const = 0;
    virtual void askToClose(wl_proxy *window) = 0;
    /// Tells the compositor that nobody listens to the window's object any more, and destroys it.
    virtual void letGo(wl_proxy *window) = 0;

    /// Takes over a window's object. `name` is the compositor's own for the window, where it has one.
    void follow(wl_proxy *window, const QByteArray &name = {});
    bool canFollow(const QByteArray &name) const;
    /// The manager will say nothing more.
    void managerHasEnded() { m_hasEnded = true; }

  private:
    struct Followed {
        WaylandWindowSource *source;
        wl_proxy *object;
        QByteArray name;
        /// As it was when it was complete the last time.
        SourceWindow told;
        /// With what has been said since.
        SourceWindow next;
        bool isComplete = false;
    };

    static int managerSaid(const void *source, void *object, unsigned opcode, const wl_message *message,
                           wl_argument *arguments);
    static int windowSaid(const void *followed, void *object, unsigned opcode, const wl_message *message,
                          wl_argument *arguments);
    bool connect();
    void take(Followed &followed, WindowNews news);
    void drop();
    bool areComplete() const;
    void noteChange();
    void noteLoss();

    const QByteArray m_display;
    std::unique_ptr<WaylandConnection> m_connection;
    wl_proxy *m_manager = nullptr;
    std::list<Followed> m_windows;
    quint64 m_lastId = 0;
    bool m_hasEnded = false;
    bool m_hasAsked = false;
    /// The last question for the windows got no answer in time.
    bool m_isBehind = false;
    bool m_willTellChange = false;
    /// Which conversation it is. What is told from the event loop may be about an earlier one.
    quint64 m_conversation = 0;
};

} // namespace kestrin::desktop
