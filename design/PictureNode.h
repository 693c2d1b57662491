#pragma once

#include <QImage>
#include <QRectF>
#include <QSGNode>
#include <QSGTexture>

#include <array>
#include <memory>
#include <optional>

class QQuickWindow;
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
        int corner = 0;   ///< pixels at the edges that keep their size where the picture is smaller than that
        bool smooth = false; ///< it will be seen scaled or between pixels
    };

  protected:
    void setPicture(QQuickWindow &window, const QImage &picture);
    /// Once it has a picture.
    void place(QQuickWindow &window, const Placement &placement);

  private:
    void placeCell(QQuickWindow &window, QSGImageNode *&cell, const QRectF &target, const QRectF &source,
                   bool smooth);

    std::unique_ptr<QSGTexture> m_texture;
    std::array<std::array<QSGImageNode *, 3>, 3> m_cells{};
};

/// A picture that is painted anew only when it is to look otherwise. A look compares, and paints itself.
template <typename Look>
class PaintedNode : public PictureNode {
  public:
    void show(QQuickWindow &window, const Look &look, const Placement &placement) {
        if (look != m_look) {
            m_look = look;
            setPicture(window, look.paint());
        }
        place(window, placement);
    }

  private:
    std::optional<Look> m_look;
};

} // namespace kestrin::design
