#include "SymbolImage.h"

#include <QFile>
#include <QFont>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace Tinkra {

namespace {

/// The stroke that stands well beside letters of a weight, in units of the symbols' grid of 24.
QByteArray strokeWidth(int weight)
{
    if (weight >= QFont::DemiBold)
        return QByteArrayLiteral("2.25");
    return weight >= QFont::Medium ? QByteArrayLiteral("2") : QByteArrayLiteral("1.75");
}

}

QImage symbolImage(const QString& name, const QColor& color, int weight, qreal size, qreal pixelsPerPoint)
{
    QFile file(QStringLiteral(":/qt/qml/Tinkra/Symbols/%1.svg").arg(name));
    const bool isThere = file.open(QIODevice::ReadOnly);
    Q_ASSERT_X(isThere, "symbolImage", qPrintable(QStringLiteral("no symbol is named ") + name));
    auto svg = file.readAll();
    svg.replace("currentColor", "#000");
    svg.replace("stroke-width=\"1.75\"", "stroke-width=\"" + strokeWidth(weight) + '"');

    const int pixels = static_cast<int>(std::ceil(size * pixelsPerPoint));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer(svg).render(&painter, QRectF(0, 0, size * pixelsPerPoint, size * pixelsPerPoint));
    // Tinted as a whole, so that a translucent colour does not show where strokes and fills overlap.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    image.setDevicePixelRatio(pixelsPerPoint);
    return image;
}

SymbolImage::SymbolImage(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    connect(this, &SymbolImage::changed, this, [this] { update(); });
}

void SymbolImage::paint(QPainter* painter)
{
    if (m_name.isEmpty() || width() <= 0)
        return;
    // The device is a plain picture of many pixels a point; the scale is the painter's.
    painter->drawImage(
        0, 0, symbolImage(m_name, m_color, m_weight, width(), painter->deviceTransform().m11()));
}

}
