#pragma once

#include <QStringList>

namespace kestrin::desktop {

/// The window's program and kestrinctl, as far as they are there.
struct OwnPrograms {
    /// Absolute, and no links.
    QStringList paths;
    /// They are where a package puts them, for which the desktop knows them.
    bool areInstalled = false;

    /// Those that belong to the program that runs, in whose folder or build they are. Needs the application
    /// object.
    static OwnPrograms find();
};

} // namespace kestrin::desktop
