#pragma once

#include "engine/RunningMacApp.h"

#include <QList>

namespace kestrin::engine {

/// Lists the running applications that the engine should consider, in the platform's order. Never fails.
class MacAppInventoryService {
  public:
    virtual ~MacAppInventoryService() = default;
    virtual QList<RunningMacApp> runningApps() = 0;
};

/// A fixed list, set by its owner.
class InMemoryMacAppInventoryService final : public MacAppInventoryService {
  public:
    explicit InMemoryMacAppInventoryService(const QList<RunningMacApp> &initial = {}) : apps(initial) {}

    QList<RunningMacApp> runningApps() override { return apps; }

    QList<RunningMacApp> apps;
};

} // namespace kestrin::engine
