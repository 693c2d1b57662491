#include "engine/JSONPrivacyModeSettingsStore.h"

#include "foundation/FileLock.h"
#include "foundation/FileReading.h"
#include "foundation/PrivateFile.h"

#include <QFile>

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

bool JSONPrivacyModeSettingsStore::update(const std::function<void(PrivacyModeSettings &)> &change) {
    // Without the lock nothing can be written, but the caller still gets to see the settings.
    const auto lock = FileLock::lockFolderOf(m_path);
    const std::optional<QByteArray> former = readWholeFile(m_path);
    const PrivacyModeSettings before = decoded(former);
    PrivacyModeSettings settings = before;
    change(settings);
    const QByteArray text = encodeJson(settings, JsonLayout::pretty);
    // Nobody need wait for the disk, nor hear of it, where everything is as it was.
    if (lock && former == text && QFile::permissions(m_path) == ownersAlone)
        return true;
    const bool isSaved = lock && replacePrivateFile(m_path, {viewOf(text)});
    return isSaved || settings == before;
}

} // namespace kestrin::engine
