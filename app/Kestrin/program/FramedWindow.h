// What the program's windows have in common.
#pragma once

#include <QQuickWindow>

#include <memory>

namespace kestrin::app {

/// A window in the colours of the palette, as large as usual where the screen has the room, and never smaller
/// than the least.
std::unique_ptr<QQuickWindow> makeFramedWindow(QSize least, QSize usual, const QString &title);

/// Shows it. Where the program draws the frame, that has the palette's colours too.
void showFramed(QQuickWindow &window);

/// Shows it over all other windows, as far as the desktop lets programs do that. The token, which may be
/// empty, is the desktop's.
void bringToFront(QQuickWindow &window, const QString &activationToken);

} // namespace kestrin::app
