#pragma once

#include "design/KestrinAppearance.h"

#include <QStringList>

namespace kestrin::app {

/// What the program was started with.
struct LaunchOptions {
    design::KestrinAppearance::Preference appearance = design::KestrinAppearance::System;
    /// Without showing the window.
    bool background = false;
    bool help = false;
    bool version = false;
    /// What is wrong with them, as a sentence; empty when nothing is.
    QString complaint;

    /// `arguments` begin with the program's name.
    static LaunchOptions read(const QStringList &arguments);
    static const char *helpText();
};

} // namespace kestrin::app
