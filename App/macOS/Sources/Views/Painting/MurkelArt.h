#pragma once

#include <QColor>

class QPainter;

namespace Tinkra {

/// What of the mascot may be chosen; face and cheeks are always the same.
struct MurkelColors {
    QColor hat;
    QColor beard;
    QColor line;
    bool showCheeks = true;
};

/// Paints the mascot into the square of `size` at the painter's origin. He is laid out in a design space of
/// 100 x 100; every shape but the cheeks is filled first and then outlined at a width of 2.4.
void paintMurkel(QPainter& painter, qreal size, const MurkelColors& colors);

/// Paints the mascot in one colour, for where he is too small for more: a solid hat over a face left open.
void paintMurkelGlyph(QPainter& painter, qreal size, const QColor& color);

}
