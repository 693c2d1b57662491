// Hearing that the time of day became another one.
#pragma once

#include <QObject>

#include <memory>

namespace kestrin {

/// Tells when the local time jumped: the clock was set, the time zone became another one, or the machine woke
/// from sleep. Local times that are computed from then on are those of the new zone. Several changes may be
/// told as one; nothing is polled, and what the platform cannot watch is not told. Main thread only.
class TimeChangeWatch : public QObject {
    Q_OBJECT

  public:
    /// `zoneLink` is the link that leads to the zone of the machine, where the platform has one.
    explicit TimeChangeWatch(QObject *parent = nullptr,
                             const QString &zoneLink = QStringLiteral("/etc/localtime"));
    ~TimeChangeWatch() override;

  Q_SIGNALS:
    void changed();

  private:
    struct Private;

    std::unique_ptr<Private> d;
};

} // namespace kestrin
