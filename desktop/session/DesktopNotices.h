#pragma once

#include <QObject>

namespace kestrin::desktop {

/// Short notices that the desktop shows over other windows and does not keep (org.freedesktop.Notifications).
/// Where nobody shows them nothing happens. Main thread.
class DesktopNotices : public QObject {
    Q_OBJECT

  public:
    explicit DesktopNotices(QObject *parent = nullptr);

    /// Returns at once; false where the platform has no such notices.
    bool show(const QString &text);

  Q_SIGNALS:
    /// One of ours was clicked; with the token for bringing a window to the front, which may be empty.
    void clicked(const QString &token);

  private Q_SLOTS:
    void takeAction(uint id, const QString &action);
    void takeToken(uint id, const QString &token);
    void forget(uint id);

  private:
    void notify(const QString &text, const QStringList &actions);

    QList<uint> m_ids;
    QString m_token;
};

} // namespace kestrin::desktop
