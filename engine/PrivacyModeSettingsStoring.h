#pragma once

#include "engine/PrivacyModeSettings.h"

#include <functional>

namespace kestrin::engine {

/// Keeps the settings. Nothing ever fails from the caller's point of view.
class PrivacyModeSettingsStoring {
  public:
    virtual ~PrivacyModeSettingsStoring() = default;
    virtual PrivacyModeSettings load() = 0;
    virtual void save(const PrivacyModeSettings &settings) = 0;

    /// Loads, changes and saves. Where processes share the settings, no other one saves in between. Returns
    /// whether they were saved.
    virtual bool update(const std::function<void(PrivacyModeSettings &)> &change) {
        PrivacyModeSettings settings = load();
        change(settings);
        save(settings);
        return true;
    }

    /// The file that changes when other processes save; empty where they cannot.
    virtual QString file() const { return {}; }
};

/// Settings that live as long as the object.
class InMemoryPrivacyModeSettingsStore final : public PrivacyModeSettingsStoring {
  public:
    explicit InMemoryPrivacyModeSettingsStore(const PrivacyModeSettings &initial) : settings(initial) {}

    PrivacyModeSettings load() override { return settings; }
    void save(const PrivacyModeSettings &newSettings) override { settings = newSettings; }

    PrivacyModeSettings settings;
};

} // namespace kestrin::engine
