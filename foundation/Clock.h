#pragma once

#include <QDateTime>

#include <functional>

namespace kestrin::foundation {

/// Tells the wall-clock time.
using Clock = std::function<QDateTime()>;

inline QDateTime systemTime() {
    return QDateTime::currentDateTimeUtc();
}

} // namespace kestrin::foundation
