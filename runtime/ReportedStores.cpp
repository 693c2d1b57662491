#include "runtime/ReportedStores.h"

#include <utility>

namespace kestrin::runtime {

using namespace foundation;
using namespace engine;

ReportedLog::ReportedLog(std::shared_ptr<MacActivityLogStoring> log, StoreReport report)
    : m_log(std::move(log))
    , m_report(std::move(report)) {}

StoreResult ReportedLog::tryAppend(const MacProtectionEvent &event) {
    StoreResult result = m_log->tryAppend(event);
    m_report(result);
    return result;
}

RememberedSettings::RememberedSettings(std::shared_ptr<PrivacyModeSettingsStoring> settings,
                                       StoreReport report)
    : m_settings(std::move(settings))
    , m_report(std::move(report)) {}

PrivacyModeSettings RememberedSettings::load() {
    if (const auto stored = m_settings->stored()) {
        m_last = stored;
        return *stored;
    }
    m_report({m_settings->problem(), {}});
    return m_last ? *m_last : m_settings->load();
}

StoreResult RememberedSettings::update(const Change &change) {
    PrivacyModeSettings changed;
    StoreResult result = m_settings->update([&](PrivacyModeSettings &settings, bool areStored) {
        if (!areStored && m_last)
            settings = *m_last;
        change(settings, areStored);
        changed = settings;
    });
    if (result.isKept())
        m_last = changed;
    m_report(result);
    return result;
}

} // namespace kestrin::runtime
