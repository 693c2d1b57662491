#pragma once

#include <QByteArray>
#include <QImage>
#include <QSGTexture>

#include <functional>
#include <memory>

class QQuickWindow;

namespace kestrin::design {

/// A painted picture on a window's renderer. Nodes that show the same picture share it; it goes with the
/// last.
using SharedTexture = std::shared_ptr<QSGTexture>;

/// The picture that `key` describes completely, painted only when no node of the window shows it yet. Only
/// while the scene graph of the window is being updated.
SharedTexture sharedTexture(QQuickWindow &window, const QByteArray &key,
                            const std::function<QImage()> &paint);

} // namespace kestrin::design
