#include "engine/JSONPrivacyModeSettingsStore.h"

namespace kestrin::engine {

using namespace foundation;

std::optional<PrivacyModeSettings> JSONPrivacyModeSettingsStore::stored() {
    return decodeJson<PrivacyModeSettings>(m_file.read().bytes);
}

StoreResult JSONPrivacyModeSettingsStore::update(const Change &change) {
    StoredFileChange file(m_file);
    const auto before = decodeJson<PrivacyModeSettings>(file.former());
    PrivacyModeSettings settings = before.value_or(m_fallback);
    change(settings, before.has_value());
    const QByteArray text = encodeJson(settings, JsonLayout::pretty);
    // Nobody need wait for the disk, nor hear of it, where everything is as it was.
    if (file.former() == text && file.text().isPrivate)
        return {};
    const StoreResult result = file.replaceBy(text, !before && !file.former().isEmpty());
    return settings == before ? StoreResult() : result;
}

QString JSONPrivacyModeSettingsStore::problem() {
    return m_file.problem(
        [](const QByteArray &text) { return decodeJson<PrivacyModeSettings>(text).has_value(); });
}

} // namespace kestrin::engine
