#include "Capsule.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace Tinkra {

namespace {

QPainterPath capsule(const QRectF& rect)
{
    const qreal radius = std::min(rect.width(), rect.height()) / 2;
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

}

Capsule::Capsule(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    connect(this, &Capsule::changed, this, [this] { update(); });
}

void Capsule::setFillEnd(const QColor& color)
{
    if (m_fillEnd == color)
        return;
    m_fillEnd = color;
    Q_EMIT changed();
}

void Capsule::paint(QPainter* painter)
{
    const auto shape = boundingRect().adjusted(m_margin, m_margin, -m_margin, -m_margin);
    if (shape.isEmpty())
        return;
    painter->setRenderHint(QPainter::Antialiasing);
    QLinearGradient gradient(m_mirrored ? shape.topRight() : shape.topLeft(),
        m_mirrored ? shape.bottomLeft() : shape.bottomRight());
    gradient.setColorAt(0, m_fill);
    gradient.setColorAt(1, fillEnd());
    painter->fillPath(capsule(shape), gradient);
    if (m_stroke.alpha() > 0)
        painter->strokePath(
            capsule(shape.adjusted(m_strokeInset, m_strokeInset, -m_strokeInset, -m_strokeInset)),
            QPen(m_stroke, m_strokeWidth));
}

}
