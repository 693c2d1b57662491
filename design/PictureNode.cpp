#include "design/PictureNode.h"

#include <QQuickWindow>
#include <QSGImageNode>

namespace kestrin::design {

void PictureNode::show(QQuickWindow &window, SharedTexture texture, const Placement &placement) {
    if (texture == m_texture && placement == m_placement)
        return;
    // The texture that was shown so far has to live until no cell names it any more.
    const SharedTexture former = std::exchange(m_texture, std::move(texture));
    m_placement = placement;

    const QSize pixels = m_texture->textureSize();
    const QRectF &rect = placement.rect;
    const QMargins &fixed = placement.fixed;
    const double scale = placement.scale;
    // Where the rows and columns begin and end, in the item and in the picture. What is not stretched is one.
    const auto cuts = [scale](bool stretched, double from, double to, int before, int after, int end) {
        std::array<double, 4> target{from, from, to, to};
        std::array<double, 4> source{0, 0, static_cast<double>(end), static_cast<double>(end)};
        if (stretched) {
            target = {from, from + before / scale, to - after / scale, to};
            source = {0, static_cast<double>(before), static_cast<double>(end - after),
                      static_cast<double>(end)};
        }
        return std::pair(target, source);
    };
    const auto [x, u] = cuts(placement.stretchedAcross, rect.left(), rect.right(), fixed.left(),
                             fixed.right(), pixels.width());
    const auto [y, v] = cuts(placement.stretchedAlong, rect.top(), rect.bottom(), fixed.top(), fixed.bottom(),
                             pixels.height());
    // Where only one direction is stretched, the middle reaches to the edges.
    const bool isHollow = placement.hollow && placement.stretchedAcross && placement.stretchedAlong;
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column) {
            if (isHollow && row == 1 && column == 1)
                place(window, 4, {}, {}, false);
            else
                place(window, row * 3 + column,
                      QRectF(QPointF(x[column], y[row]), QPointF(x[column + 1], y[row + 1])),
                      QRectF(QPointF(u[column], v[row]), QPointF(u[column + 1], v[row + 1])),
                      placement.smooth);
        }
    }
}

void PictureNode::place(QQuickWindow &window, size_t cell, const QRectF &target, const QRectF &source,
                        bool smooth) {
    QSGImageNode *&node = m_cells[cell];
    if (target.isEmpty() || source.isEmpty()) {
        delete node;
        node = nullptr;
        return;
    }
    const bool added = !node;
    if (added) {
        node = window.createImageNode();
        node->setOwnsTexture(false);
    }
    node->setTexture(m_texture.get());
    node->setFiltering(smooth ? QSGTexture::Linear : QSGTexture::Nearest);
    node->setRect(target);
    node->setSourceRect(source);
    // Last, because the software renderer looks at its texture at once.
    if (added)
        appendChildNode(node);
}

} // namespace kestrin::design
