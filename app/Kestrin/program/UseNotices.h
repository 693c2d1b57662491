#pragma once

#include "app/Kestrin/program/NoticeLimit.h"
#include "app/Kestrin/program/Protection.h"

#include <QObject>
#include <QSet>

#include <functional>

namespace kestrin::app {

/// Which uses of microphone, camera and screen are worth a notice of the desktop: that an application began,
/// and that a protected one goes on although it was asked to quit. Each of them once in a minute for an
/// application and what it uses, and not more in all than anybody reads.
class UseNotices : public QObject {
    Q_OBJECT

  public:
    using Now = std::function<NoticeLimit::Time()>;

    /// `patience` is how long after it was asked, or began, an application goes on. The protection outlives
    /// this object.
    explicit UseNotices(Protection &protection, std::chrono::milliseconds patience = std::chrono::seconds(5),
                        Now now = std::chrono::steady_clock::now, QObject *parent = nullptr);

    /// Whether it could be added to the catalog, because no definition knows it.
    bool isUnknown(const engine::DeviceUse &use) const;
    /// What this application uses now.
    QList<engine::MacRiskCategory> categoriesOf(const engine::DeviceUse &use) const;
    /// Asks the application to quit once more. Returns what is to be said of that; empty when it was asked,
    /// which is told as always.
    QString askAgain(const engine::DeviceUse &use);

  Q_SIGNALS:
    void began(const kestrin::engine::DeviceUse &use);
    void goingOn(const kestrin::engine::DeviceUse &use);

  private:
    void tellBegun(const engine::DeviceUse &use);
    void takeRequest(const engine::MacProtectionEvent &event);
    void lookLater(const QString &definition);
    void look(const QString &definition);
    QString definitionOf(const engine::DeviceUse &use) const;

    Protection &m_protection;
    const std::chrono::milliseconds m_patience;
    const Now m_now;
    NoticeLimit m_limit{std::chrono::minutes(1), 20};
    /// The definitions of those that were asked to quit, as long as such requests are made.
    QSet<QString> m_asked;
    /// Those of them that will be looked at.
    QSet<QString> m_pending;
};

} // namespace kestrin::app
