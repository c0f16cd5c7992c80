#include "ContinuousCard.h"

#include "VectorPath.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Tinkra {

namespace {

/// How far `point` lies outside of the rounded rectangle; 0 inside.
qreal distanceOutside(const QRectF& rect, qreal radius, QPointF point)
{
    const auto fromCenter = point - rect.center();
    const qreal x = std::max(std::abs(fromCenter.x()) - rect.width() / 2 + radius, 0.0);
    const qreal y = std::max(std::abs(fromCenter.y()) - rect.height() / 2 + radius, 0.0);
    return std::max(std::hypot(x, y) - radius, 0.0);
}

/// Takes the coverage down to nothing over `reach` points around the card (smoothstep).
void fade(QImage& coverage, const QRect& area, const QRectF& card, qreal radius, qreal reach)
{
    for (int y = 0; y < coverage.height(); ++y) {
        auto* row = coverage.scanLine(y);
        for (int x = 0; x < coverage.width(); ++x) {
            const QPointF center(area.x() + x + 0.5, area.y() + y + 0.5);
            const qreal left = std::clamp(1 - distanceOutside(card, radius, center) / reach, 0.0, 1.0);
            row[x] = static_cast<uchar>(std::lround(row[x] * left * left * (3 - 2 * left)));
        }
    }
}

}

ContinuousCard::ContinuousCard(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    connect(this, &ContinuousCard::changed, this, [this] { update(); });
}

void ContinuousCard::paintShadow(QPainter& painter, const QRectF& card) const
{
    if (m_shadowOpacity <= 0)
        return;
    const auto shape = continuousRoundedRect(card.translated(0, m_shadowOffset), m_radius);
    const auto area = boundingRect().toAlignedRect();
    auto coverage = blurredCoverage(shape, area, m_shadowRadius);
    if (m_shadowFades)
        fade(coverage, area, card, m_radius, m_margin);

    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(m_shadowOpacity);
    painter.drawImage(area.topLeft(), coverage); // black, with the coverage as its alpha
    painter.restore();
}

void ContinuousCard::paint(QPainter* painter)
{
    const auto card = boundingRect().adjusted(m_margin, m_margin, -m_margin, -m_margin);
    if (card.isEmpty())
        return;
    painter->setRenderHint(QPainter::Antialiasing);
    paintShadow(*painter, card);
    painter->fillPath(continuousRoundedRect(card, m_radius), m_fill);
    if (m_stroke.alpha() > 0) {
        const auto inset = m_strokeInset;
        painter->strokePath(
            continuousRoundedRect(card.adjusted(inset, inset, -inset, -inset), m_radius - inset),
            QPen(m_stroke, m_strokeWidth));
    }
}

}
