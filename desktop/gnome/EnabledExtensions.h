// With which extensions a GNOME session begins.
#pragma once

#include <QByteArray>

namespace kestrin::desktop {

/// Whether the next session begins with our extension, by GNOME's own tool for settings (gsettings). The
/// shell that runs need not know the extension. False when it could not be changed; where there are no such
/// settings a session begins without it. Waits for a few seconds at most.
bool setEnabledAtLogin(bool isEnabled);

/// A list of texts as that tool writes them, with this item in it or not. Empty when it is no list.
QByteArray listWith(QByteArray list, const QByteArray &item, bool isIn);

} // namespace kestrin::desktop
