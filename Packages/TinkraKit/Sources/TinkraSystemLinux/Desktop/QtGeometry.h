#pragma once

#include "TinkraSystem/Desktop/Geometry.h"

#include <QPoint>
#include <QRect>

namespace Tinkra::System {

// Qt's points have their origin at the top left corner of the desktop and y grows downwards; the product's
// have it at the bottom left corner of the first screen and y grows upwards.

Point productPoint(QPoint point);
Rect productRect(QRect rect);
QRect qtRect(const Rect& rect);

}
