#pragma once

#include <QPainterPath>

#include <string_view>

namespace Tinkra {

/// The path that SVG path data of the absolute commands M, L, Q, C and Z describes, with every number apart
/// from the next by a blank or a comma. For our own constant art: anything else is a broken assumption.
QPainterPath vectorPath(std::string_view data);

/// A rectangle with continuous corners: their curvature grows from nothing instead of jumping, as on the
/// shapes of macOS. `radius` is the one of the circular corner that it resembles.
QPainterPath continuousRoundedRect(const QRectF& rect, qreal radius);

}
