#pragma once

#include "runtime/LiveUse.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <optional>

namespace kestrin::app {

/// What tray and window see of who uses microphone, camera and screen. What has ended is shown for a moment
/// longer, so that nothing flickers where somebody begins and ends all the time.
class MacLiveUse : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window has one.")
    /// Whether anything of it is looked for.
    Q_PROPERTY(bool on READ isOn WRITE setOn NOTIFY switched FINAL)
    /// A line for each application; none when nothing is in use.
    Q_PROPERTY(QStringList lines READ lines NOTIFY changed FINAL)
    /// All of these lines.
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    /// The same in sentences; empty when nothing is in use.
    Q_PROPERTY(QString sentences READ sentences NOTIFY changed FINAL)
    /// The name of a symbol for it.
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed FINAL)

  public:
    /// `use` outlives this object.
    explicit MacLiveUse(runtime::LiveUse &use, QObject *parent = nullptr);

    bool isOn() const { return m_use.isOn(); }
    /// What could not be stored is not so, and the runtime says why.
    void setOn(bool on);
    QStringList lines() const;
    QString text() const { return lines().join(u'\n'); }
    QString sentences() const;
    QString symbol() const;

  Q_SIGNALS:
    void switched();
    void changed();

  private:
    using Clock = std::chrono::steady_clock;
    struct Shown {
        engine::DeviceUse use;
        /// Absent while it goes on.
        std::optional<Clock::time_point> ended;
    };

    void follow();
    QList<engine::DeviceUse> shownUses() const;

    runtime::LiveUse &m_use;
    QList<Shown> m_shown;
    QTimer m_later;
};

} // namespace kestrin::app
