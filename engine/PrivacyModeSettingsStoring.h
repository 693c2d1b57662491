#pragma once

#include "engine/PrivacyModeSettings.h"
#include "foundation/StoreResult.h"

#include <functional>
#include <optional>

namespace kestrin::engine {

/// Keeps the settings. Nothing ever fails from the caller's point of view, unless he asks.
class PrivacyModeSettingsStoring {
  public:
    virtual ~PrivacyModeSettingsStoring() = default;
    virtual PrivacyModeSettings load() = 0;
    /// The settings that somebody has chosen; none where nothing is stored that could be used.
    virtual std::optional<PrivacyModeSettings> stored() { return load(); }
    void save(const PrivacyModeSettings &settings) {
        static_cast<void>(update([&](PrivacyModeSettings &stored, bool) { stored = settings; }));
    }

    /// Is given the settings and whether they are stored ones.
    using Change = std::function<void(PrivacyModeSettings &, bool areStored)>;
    /// Loads, changes and saves. Where processes share the settings, no other one saves in between. What
    /// could not be saved is no matter where stored settings were not changed.
    [[nodiscard]] virtual foundation::StoreResult update(const Change &change) = 0;

    /// Why what is stored cannot be used now, as a sentence; empty when it can be.
    virtual QString problem() { return {}; }
    /// The file that changes when other processes save; empty where they cannot.
    virtual QString file() const { return {}; }
};

/// Settings that live as long as the object.
class InMemoryPrivacyModeSettingsStore : public PrivacyModeSettingsStoring {
  public:
    explicit InMemoryPrivacyModeSettingsStore(const PrivacyModeSettings &initial) : settings(initial) {}

    PrivacyModeSettings load() override { return settings; }
    [[nodiscard]] foundation::StoreResult update(const Change &change) override {
        change(settings, true);
        return {};
    }

    PrivacyModeSettings settings;
};

} // namespace kestrin::engine
