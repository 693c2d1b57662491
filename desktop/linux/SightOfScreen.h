// Who can read the screen without the desktop telling anybody.
#pragma once

#include <QString>

namespace kestrin::desktop {

/// A sentence for people, by the kind of session in the environment; empty where every program has to ask the
/// desktop, and where there is no screen.
QString unseenReadersOfScreen();

} // namespace kestrin::desktop
