#include "engine/JSONPrivacyModeSettingsStore.h"

#include "foundation/FileLock.h"
#include "foundation/FileReading.h"
#include "foundation/PrivateFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace kestrin::engine {

using namespace foundation;

namespace {

constexpr QFile::Permissions ownersAlone =
    QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;

} // namespace

PrivacyModeSettings JSONPrivacyModeSettingsStore::load() {
    return decoded(readWholeFile(m_path));
}

PrivacyModeSettings JSONPrivacyModeSettingsStore::decoded(const std::optional<QByteArray> &text) const {
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
    const std::optional<QByteArray> former = readWholeFile(m_path);
    PrivacyModeSettings settings = decoded(former);
    change(settings);
    const QByteArray text = encodeJson(settings, JsonLayout::pretty);
    // Nobody need wait for the disk, nor hear of it, where everything is as it was.
    if (lock && former == text && QFile::permissions(m_path) == ownersAlone)
        return true;
    return lock && replacePrivateFile(m_path, {viewOf(text)});
}

} // namespace kestrin::engine
