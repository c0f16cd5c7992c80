#pragma once

#include <QImage>
#include <QPainterPath>

namespace Tinkra {

/// The shadow of a shape.
struct Shadow {
    qreal opacity = 0; ///< of its black, 0...1
    qreal radius = 0; ///< the standard deviation of its blur, in points
    QPointF offset; ///< in points
};

/// The coverage (Alpha8, one pixel per point, the top left one at `area`'s) of `shape` blurred with a
/// standard deviation of `radius` points.
QImage blurredCoverage(const QPainterPath& shape, const QRect& area, qreal radius);

/// Blurs an Alpha8 image in place by three box filters each way, which come within some percent of a
/// Gaussian. What lies outside of the image counts as nothing.
void blur(QImage& coverage, qreal standardDeviation);

}
