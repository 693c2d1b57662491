#include "design/PictureNode.h"

#include <QQuickWindow>
#include <QSGImageNode>

namespace kestrin::design {

namespace {

/// Where the three parts of a length begin and end: its two corners, and what is stretched between them.
using Cuts = std::array<double, 4>;

Cuts cuts(double from, double to, double corner) {
    return {from, from + corner, to - corner, to};
}

QRectF cell(const Cuts &x, const Cuts &y, size_t column, size_t row) {
    return {QPointF(x.at(column), y.at(row)), QPointF(x.at(column + 1), y.at(row + 1))};
}

} // namespace

void PictureNode::setPicture(QQuickWindow &window, const QImage &picture) {
    QQuickWindow::CreateTextureOptions options = QQuickWindow::TextureHasAlphaChannel;
    options |= QQuickWindow::TextureCanUseAtlas;
    // The one that was shown so far has to live until no cell names it any more.
    const std::unique_ptr<QSGTexture> former = std::exchange(
        m_texture, std::unique_ptr<QSGTexture>(window.createTextureFromImage(picture, options)));
    for (const auto &row : m_cells) {
        for (QSGImageNode *const cell : row) {
            if (cell)
                cell->setTexture(m_texture.get());
        }
    }
}

void PictureNode::place(QQuickWindow &window, const Placement &placement) {
    const QRectF &rect = placement.rect;
    const QSize pixels = m_texture->textureSize();
    // A picture that is as large as its place is a single cell.
    const auto cornerOf = [&placement](double length, int picture) {
        return qRound(length * placement.scale) > picture ? placement.corner : 0;
    };
    const int across = cornerOf(rect.width(), pixels.width());
    const int along = cornerOf(rect.height(), pixels.height());
    const Cuts x = cuts(rect.left(), rect.right(), across / placement.scale);
    const Cuts y = cuts(rect.top(), rect.bottom(), along / placement.scale);
    const Cuts u = cuts(0, pixels.width(), across);
    const Cuts v = cuts(0, pixels.height(), along);
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column)
            placeCell(window, m_cells.at(row).at(column), cell(x, y, column, row), cell(u, v, column, row),
                      placement.smooth);
    }
}

void PictureNode::placeCell(QQuickWindow &window, QSGImageNode *&cell, const QRectF &target,
                            const QRectF &source, bool smooth) {
    if (target.isEmpty() || source.isEmpty()) {
        delete std::exchange(cell, nullptr);
        return;
    }
    const bool added = !cell;
    if (added) {
        cell = window.createImageNode();
        cell->setOwnsTexture(false);
        cell->setTexture(m_texture.get());
    }
    cell->setFiltering(smooth ? QSGTexture::Linear : QSGTexture::Nearest);
    cell->setRect(target);
    cell->setSourceRect(source);
    // Last, because the software renderer looks at its texture at once.
    if (added)
        appendChildNode(cell);
}

} // namespace kestrin::design
