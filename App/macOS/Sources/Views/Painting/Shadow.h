#pragma once

#include <QImage>
#include <QPainterPath>

namespace Tinkra {

/// The coverage of `shape` (Alpha8, one pixel per point, the top left one that of `area`), blurred with a
/// standard deviation of `radius` points: three box filters each way, which come within some percent of a
/// Gaussian.
QImage blurredCoverage(const QPainterPath& shape, const QRect& area, qreal radius);

}
