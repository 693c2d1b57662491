#include "runtime/FirstStart.h"

#include <QDir>

#include <algorithm>

namespace kestrin::runtime {

namespace {

/// Locks are left behind by whoever only looks.
bool isAnythingIn(const QString &supportFolder) {
    const QStringList files = QDir(supportFolder).entryList(QDir::Files | QDir::Hidden | QDir::System);
    return std::any_of(files.cbegin(), files.cend(),
                       [](const QString &file) { return !file.endsWith(QLatin1String(".lock")); });
}

bool isDueBy(const UserDefaults &defaults, const QString &supportFolder) {
    if (const auto isBegun = defaults.boolean(FirstStart::key))
        return !*isBegun;
    return defaults.isEmpty() && !isAnythingIn(supportFolder);
}

} // namespace

const QString FirstStart::key = QStringLiteral("kestrin.mac.firstStartBegun");

FirstStart::FirstStart(UserDefaults &defaults, const QString &supportFolder)
    : m_defaults(defaults)
    , m_isDue(isDueBy(defaults, supportFolder)) {}

bool FirstStart::begin() {
    m_isDue = false;
    return m_defaults.setBoolean(key, true).isKept();
}

void FirstStart::putOff() {
    if (m_isDue)
        m_defaults.setBoolean(key, false);
}

} // namespace kestrin::runtime
