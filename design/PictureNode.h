#pragma once

#include "design/SceneTextures.h"

#include <QMargins>
#include <QRectF>
#include <QSGNode>

#include <array>

class QSGImageNode;

namespace kestrin::design {

/// What nodes are added to later. The software renderer forgets where a plain QSGNode is, and would draw what
/// comes to it after it was drawn first in the window's corner.
using GrowingNode = QSGTransformNode;

/// A picture on the scene graph, as it is or stretched between its corners; built from nodes that every
/// renderer has.
class PictureNode : public GrowingNode {
  public:
    struct Placement {
        QRectF rect;      ///< in the item's coordinates
        double scale = 1; ///< pixels of the picture a unit of the item's coordinates
        QMargins fixed;   ///< pixels at the edges that keep their size when `stretched`
        bool stretchedAcross = false;
        bool stretchedAlong = false;
        bool hollow = false; ///< without its middle, which nobody would see
        bool smooth = false; ///< it will be seen scaled or between pixels

        bool operator==(const Placement &) const = default;
    };

    void show(QQuickWindow &window, SharedTexture texture, const Placement &placement);

  private:
    void place(QQuickWindow &window, size_t cell, const QRectF &target, const QRectF &source, bool smooth);

    SharedTexture m_texture;
    Placement m_placement;
    std::array<QSGImageNode *, 9> m_cells{};
};

} // namespace kestrin::design
