// Hearing that the time of day became another one.
#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace kestrin::runtime {

/// Tells when the local time jumped: the clock was set, the time zone became another one, or the machine woke
/// from sleep. Local times that are computed from then on are those of the new zone. Several changes may be
/// told as one; nothing is polled, and what the platform cannot watch is not told: this class itself tells
/// only what its owner does. Main thread only.
class TimeChangeWatch : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

  Q_SIGNALS:
    void changed();
};

/// Begins to watch. May be empty where nothing can be.
using TimeChangeWatchMaker = std::function<std::unique_ptr<TimeChangeWatch>()>;

} // namespace kestrin::runtime
