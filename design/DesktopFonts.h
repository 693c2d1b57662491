#pragma once

#include <QString>

namespace kestrin::design {

/// Until fetchDesktopFonts(), no font is known but those of the program itself: to read the desktop's font
/// configuration, to list its fonts and to search them for each font in use takes a sixth of the time to the
/// first frame. Before the QGuiApplication.
void postponeDesktopFonts();

bool areDesktopFontsPostponed();

/// Reads the configuration now. Faces that the program has added have to be added again. Main thread.
void fetchDesktopFonts();

/// The family behind a name like "Sans Serif". QFontInfo would load that font, which may be one that nothing
/// is ever written in.
QString realFamily(const QString &family);

} // namespace kestrin::design
