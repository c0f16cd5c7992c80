#include "MurkelPainting.h"

#include <QPainter>

namespace Tinkra {

MurkelPainting::MurkelPainting(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
}

void MurkelPainting::setMoving(bool on)
{
    setContentsScale(on ? 2 : 1);
    change(m_isMoving, on);
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
