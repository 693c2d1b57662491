#pragma once

#include "foundation/StoreResult.h"

#include <QByteArray>
#include <QString>

namespace kestrin::runtime {

/// Writes a file of the user's choice, whole or not at all, readable by its owner only. What has that name so
/// far is replaced.
foundation::StoreResult exportTo(const QString &path, const QByteArray &text);

} // namespace kestrin::runtime
