#pragma once

#include <QHash>
#include <QObject>

#include <functional>

namespace kestrin::desktop {

/// Short notices that the desktop shows over other windows (org.freedesktop.Notifications). It keeps those
/// that offer something, and no others. Where nobody shows them nothing happens. Main thread.
class DesktopNotices : public QObject {
    Q_OBJECT

  public:
    explicit DesktopNotices(QObject *parent = nullptr);

    /// A button of a notice: its title, and what happens when somebody chooses it. That gets the token for
    /// bringing a window to the front, which may be empty.
    struct Offer {
        QString title;
        std::function<void(const QString &token)> accept;
    };

    /// What becomes of a notice.
    enum class Fate { notShown, shownWhileWeRun, shown };
    using Told = std::function<void(Fate)>;

    /// Returns at once; false where the platform has no such notices. Not every desktop shows the offer.
    /// `told` is called once the desktop has answered, which it may never do.
    bool show(const QString &text, const Offer &offer = {}, const Told &told = {});

  Q_SIGNALS:
    /// One of ours was clicked; with the token for bringing a window to the front, which may be empty.
    void clicked(const QString &token);

  private Q_SLOTS:
    void takeAction(uint id, const QString &action);
    void takeToken(uint id, const QString &token);
    void forget(uint id);

  private:
    void notify(const QString &text, const Offer &offer, QStringList actions,
                const std::function<void(bool)> &answered);

    /// What each of ours offers, by the number that the desktop gave it.
    QHash<uint, Offer> m_shown;
    QString m_token;
};

} // namespace kestrin::desktop
