#pragma once

#include <QString>

#include <future>

namespace kestrin {

/// Reads the font configuration of the desktop, which takes as long as connecting to it, on a thread of its
/// own. Whoever needs a font meanwhile waits for it. Start it before the QGuiApplication and keep it as long;
/// its end waits for the thread.
[[nodiscard]] std::future<void> prepareFonts();

/// The family behind a name like "Sans Serif". QFontInfo would load that font, which may be one that nothing
/// is ever written in.
QString realFamily(const QString &family);

} // namespace kestrin
