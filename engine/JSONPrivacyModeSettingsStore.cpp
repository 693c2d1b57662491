#include "engine/JSONPrivacyModeSettingsStore.h"

#include "foundation/FileLock.h"
#include "foundation/PrivateFile.h"

#include <QDir>
#include <QFileInfo>

namespace kestrin {

PrivacyModeSettings JSONPrivacyModeSettingsStore::load() {
    const std::optional<QByteArray> text = readWholeFile(m_path);
    return text ? decodeJson<PrivacyModeSettings>(*text).value_or(m_fallback) : m_fallback;
}

void JSONPrivacyModeSettingsStore::save(const PrivacyModeSettings &settings) {
    update([&](PrivacyModeSettings &stored) { stored = settings; });
}

bool JSONPrivacyModeSettingsStore::update(const std::function<void(PrivacyModeSettings &)> &change) {
    using namespace std::chrono_literals;
    const QString folder = QFileInfo(m_path).absolutePath();
    // Without a folder or its lock nothing can be written, but the caller still gets to see the settings.
    const bool folderExists = QDir().mkpath(folder);
    const auto lock = folderExists ? FileLock::lockFolder(folder, 10s) : std::nullopt;
    PrivacyModeSettings settings = load();
    change(settings);
    const QByteArray text = encodeJson(settings, JsonLayout::pretty);
    return lock && replacePrivateFile(m_path, {viewOf(text)});
}

} // namespace kestrin
