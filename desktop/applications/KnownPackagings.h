// The catalog's applications under the names that their Linux packagings give them.
#pragma once

#include <QString>

#include <optional>

namespace kestrin::desktop {

/// The catalog's bundle identifier for an application with this desktop-file id (without ".desktop"), or this
/// sandbox id; none for others. Case does not count.
std::optional<QString> knownBundleIdentifierOfId(const QString &desktopFileId);

/// The same for an application whose windows are of this class.
std::optional<QString> knownBundleIdentifierOfClass(const QString &windowClass);

} // namespace kestrin::desktop
