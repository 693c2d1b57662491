// What Qt calls universal time.
#pragma once

#include <QTimeZone>

namespace kestrin::foundation {

// The older name is deprecated where the newer one exists.
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
inline constexpr auto universalTime = QTimeZone::UTC;
#else
inline constexpr auto universalTime = Qt::UTC;
#endif

} // namespace kestrin::foundation
