#pragma once

#include "desktop/sources/WindowSource.h"

#include <QThread>

namespace kestrin::desktop {

/// Whether the source opens within a few seconds: desktops need a moment to notice what they were allowed.
inline bool opensSoon(WindowSource &source) {
    const foundation::Deadline deadline(2 * desktopPatience);
    do {
        if (source.open(deadline))
            return true;
        QThread::msleep(50);
    } while (deadline.remaining().count() > 0);
    return false;
}

} // namespace kestrin::desktop
