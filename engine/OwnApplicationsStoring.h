#pragma once

#include "engine/RiskAppDefinition.h"
#include "foundation/StoreResult.h"

#include <functional>
#include <optional>

namespace kestrin::engine {

/// Keeps the user's own applications, in the order in which they were added.
class OwnApplicationsStoring {
  public:
    virtual ~OwnApplicationsStoring() = default;

    /// None where what is stored cannot be used; an empty list where nothing is stored.
    virtual std::optional<QList<RiskAppDefinition>> stored() = 0;

    /// Changes the list, or returns a sentence that says why not, and then nothing is stored.
    using Change = std::function<QString(QList<RiskAppDefinition> &)>;
    /// Loads, changes and saves. Where processes share the list, no other one saves in between. What cannot
    /// be used is left as it is, and the change is not made.
    [[nodiscard]] virtual foundation::StoreResult update(const Change &change) = 0;

    /// Why what is stored cannot be used now, as a sentence; empty when it can be.
    virtual QString problem() { return {}; }
    /// The file that changes when other processes save; empty where they cannot.
    virtual QString file() const { return {}; }
};

/// A list that lives as long as the object.
class InMemoryOwnApplicationsStore final : public OwnApplicationsStoring {
  public:
    std::optional<QList<RiskAppDefinition>> stored() override { return definitions; }
    [[nodiscard]] foundation::StoreResult update(const Change &change) override {
        QList<RiskAppDefinition> changed = definitions;
        foundation::StoreResult result;
        result.problem = change(changed);
        if (result.isKept())
            definitions = changed;
        return result;
    }

    QList<RiskAppDefinition> definitions;
};

} // namespace kestrin::engine
