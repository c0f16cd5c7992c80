#include "MurkelPainting.h"

#include <QPainter>

namespace Tinkra {

MurkelPainting::MurkelPainting(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
}

void MurkelPainting::setMoving(bool on)
{
    change(m_isMoving, on);
    updateResolution();
}

void MurkelPainting::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    updateResolution();
}

void MurkelPainting::updateResolution()
{
    const int pixelsPerPoint = m_isMoving ? 2 : 1;
    setContentsScale(pixelsPerPoint);
    setTextureSize(pixelsPerPoint * QSizeF(width(), height()).toSize());
}

void MurkelPainting::paint(QPainter* painter)
{
    paintMurkel(*painter, width(), m_colors);
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
