#pragma once

#include "engine/RiskAppActionResult.h"
#include "engine/RunningMacApp.h"

#include <QList>

namespace kestrin::engine {

/// Asks an application to quit and says how that went. Never fails: problems are told by the result.
class RiskAppActionPerforming {
  public:
    virtual ~RiskAppActionPerforming() = default;
    virtual RiskAppActionResult requestQuit(const RunningMacApp &app) = 0;
};

/// Gives the same answer to every request and remembers who was asked.
class InMemoryRiskAppActionPerformer final : public RiskAppActionPerforming {
  public:
    explicit InMemoryRiskAppActionPerformer(RiskAppActionResult answer = {}) : result(std::move(answer)) {}

    RiskAppActionResult requestQuit(const RunningMacApp &app) override {
        requests.append(app);
        return result;
    }

    RiskAppActionResult result;
    QList<RunningMacApp> requests;
};

} // namespace kestrin::engine
