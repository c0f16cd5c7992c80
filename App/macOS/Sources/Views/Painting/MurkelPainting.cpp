#include "MurkelPainting.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <cmath>
#include <utility>

namespace Tinkra {

MurkelPainting::MurkelPainting(QQuickItem* parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void MurkelPainting::setMoving(bool on)
{
    change(m_isMoving, on);
}

void MurkelPainting::redraw()
{
    m_isOutdated = true;
    update();
}

void MurkelPainting::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        redraw();
}

void MurkelPainting::itemChange(ItemChange change, const ItemChangeData& data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange)
        redraw();
}

QSGNode* MurkelPainting::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/)
{
    auto* imageNode = static_cast<QSGImageNode*>(node);
    if (width() <= 0) {
        delete imageNode;
        return nullptr;
    }
    if (!imageNode) {
        imageNode = window()->createImageNode();
        imageNode->setOwnsTexture(true);
        m_isOutdated = true;
    }
    if (std::exchange(m_isOutdated, false)) {
        const qreal pixelsPerPoint = window()->effectiveDevicePixelRatio() * (m_isMoving ? 2 : 1);
        const int pixels = static_cast<int>(std::ceil(width() * pixelsPerPoint));
        QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paintMurkel(painter, width() * pixelsPerPoint, m_colors);
        painter.end();
        imageNode->setTexture(window()->createTextureFromImage(image, QQuickWindow::TextureHasAlphaChannel));
        imageNode->setRect(0, 0, pixels / pixelsPerPoint, pixels / pixelsPerPoint);
        imageNode->setFiltering(m_isMoving ? QSGTexture::Linear : QSGTexture::Nearest);
    }
    return imageNode;
}

MurkelGlyphPainting::MurkelGlyphPainting(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    connect(this, &MurkelGlyphPainting::changed, this, [this] { update(); });
}

void MurkelGlyphPainting::paint(QPainter* painter)
{
    paintMurkelGlyph(*painter, width(), m_color);
}

}
