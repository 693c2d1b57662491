// The system's own word that the time of day became another one.
#pragma once

#include "runtime/TimeChangeWatch.h"

namespace kestrin::desktop {

/// Hears it from the kernel and from the link to the time zone, on macOS from the system's notifications.
/// Costs no wake-up in between.
class SystemTimeChangeWatch final : public runtime::TimeChangeWatch {
    Q_OBJECT

  public:
    /// `zoneLink` is the link that leads to the zone of the machine, where the platform has one.
    explicit SystemTimeChangeWatch(QObject *parent = nullptr,
                                   const QString &zoneLink = QStringLiteral("/etc/localtime"));
    ~SystemTimeChangeWatch() override;

  private:
    struct Private;

    std::unique_ptr<Private> d;
};

} // namespace kestrin::desktop
