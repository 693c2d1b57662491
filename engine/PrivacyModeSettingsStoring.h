#pragma once

#include "engine/PrivacyModeSettings.h"

#include <functional>

namespace kestrin::engine {

/// Keeps the settings. Nothing ever fails from the caller's point of view, unless he asks.
class PrivacyModeSettingsStoring {
  public:
    virtual ~PrivacyModeSettingsStoring() = default;
    virtual PrivacyModeSettings load() = 0;
    void save(const PrivacyModeSettings &settings) {
        static_cast<void>(update([&](PrivacyModeSettings &stored) { stored = settings; }));
    }

    /// Loads, changes and saves. Where processes share the settings, no other one saves in between. Returns
    /// whether they read as changed now: what could not be saved is no matter where nothing was changed.
    [[nodiscard]] virtual bool update(const std::function<void(PrivacyModeSettings &)> &change) = 0;

    /// The file that changes when other processes save; empty where they cannot.
    virtual QString file() const { return {}; }
};

/// Settings that live as long as the object.
class InMemoryPrivacyModeSettingsStore : public PrivacyModeSettingsStoring {
  public:
    explicit InMemoryPrivacyModeSettingsStore(const PrivacyModeSettings &initial) : settings(initial) {}

    PrivacyModeSettings load() override { return settings; }
    [[nodiscard]] bool update(const std::function<void(PrivacyModeSettings &)> &change) override {
        change(settings);
        return true;
    }

    PrivacyModeSettings settings;
};

} // namespace kestrin::engine
