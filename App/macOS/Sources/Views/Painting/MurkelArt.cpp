#include "MurkelArt.h"

#include "VectorPath.h"

#include <QPainter>

namespace Tinkra {

namespace {

constexpr qreal designSize = 100;
constexpr qreal lineWidth = 2.4;

const QColor face = QColor::fromRgbF(0.937F, 0.808F, 0.667F);
const QColor cheek = QColor::fromRgbF(0.93F, 0.66F, 0.62F, 0.85F);

QPainterPath ellipse(qreal x, qreal y, qreal width, qreal height)
{
    QPainterPath path;
    path.addEllipse(x, y, width, height);
    return path;
}

// An ellipse no wider than the line is covered by its own outline, which makes the eyes; a path that runs
// back on itself draws a line, which makes the smile and the fold of the hat.
namespace Shape {

const QPainterPath leftEar = vectorPath("M 24 55 Q 11 47 7 53 Q 6.5 66 24 70 Q 28 62 24 55 Z");
const QPainterPath rightEar = vectorPath("M 76 55 Q 89 47 93 53 Q 93.5 66 76 70 Q 72 62 76 55 Z");
const QPainterPath face = vectorPath("M 22 52 Q 19 74 33 79 Q 50 86 67 79 Q 81 74 78 52 Q 50 36 22 52 Z");
const QPainterPath leftCheek = ellipse(32.9, 64, 7.2, 6);
const QPainterPath rightCheek = ellipse(59.9, 64, 7.2, 6);
const QPainterPath leftEye = ellipse(39.1, 54.4, 2.2, 3.8);
const QPainterPath rightEye = ellipse(58.7, 54.4, 2.2, 3.8);
const QPainterPath beard = vectorPath("M 20.5 62 Q 8.5 73 13.5 81.5 Q 19 88.5 31 89.6 Q 42 90.6 47.8 96.4 Q "
                                      "50 98.6 52.2 96.4 Q 58 90.6 69 89.6 "
                                      "Q 81 88.5 86.5 81.5 Q 91.5 73 79.5 62 Q 76 72 67 73.5 Q 58 74 50 69.5 "
                                      "Q 42 74 33 73.5 Q 24 72 20.5 62 Z");
const QPainterPath smile = vectorPath("M 43 79 Q 50 85 57 79 Q 50 85 43 79 Z");
const QPainterPath nose = ellipse(42.2, 60, 15.6, 13);
const QPainterPath hat = vectorPath(
    "M 13 56.5 Q 9.5 55 12.5 51 Q 28 31.5 37 15.5 Q 44 2.6 58 2.6 Q 75 2.6 85.8 18.5 Q 90.2 25.8 86 28.8 "
    "Q 81.5 30.8 78 26.5 Q 74 21.5 68.5 22.5 Q 73 38 87.5 51 Q 90.5 55 87 56.5 Q 50 39.5 13 56.5 Z");
const QPainterPath hatFold = vectorPath("M 68.5 22.5 Q 61 23.5 57 28.5 Q 61 23.5 68.5 22.5 Z");

}

QPainterPath makeGlyph()
{
    auto path = vectorPath(
        "M 11.5 57 Q 6 55 10.5 49 Q 26.5 30 35.8 14.5 Q 43.5 1.4 58 1.4 Q 75.5 1.4 87 18 Q 92.4 26.4 87 29.8 "
        "Q 81 32.4 77 27.4 Q 74 23.6 70.4 23.8 Q 75 36.5 89.5 49 Q 94 55 88.5 57 Q 86 56.1 83.5 55.3 "
        "Q 83.6 60 82.4 63 Q 94.5 74 88.2 82.8 Q 81.5 89.9 69 91 Q 58.5 92 53 97.4 Q 50 99.8 47 97.4 "
        "Q 41.5 92 31 91 Q 18.5 89.9 11.8 82.8 Q 5.5 74 17.6 63 Q 16.4 60 16.5 55.3 Q 14 56.1 11.5 57 Z "
        "M 23.2 53 Q 50 44 76.8 53 Q 77 61.5 74.2 65 Q 87 74.6 82 79.6 Q 77.5 84 68.5 84.9 Q 57 86 50 91.4 "
        "Q 43 86 31.5 84.9 Q 22.5 84 18 79.6 Q 13 74.6 25.8 65 Q 23 61.5 23.2 53 Z "
        "M 38.2 73.6 Q 35.8 71.6 37.8 69.8 Q 39.8 68.6 41.8 70.6 Q 50 78.4 58.2 70.6 Q 60.2 68.6 62.2 69.8 "
        "Q 64.2 71.6 61.8 73.6 Q 50 85 38.2 73.6 Z");
    path.addEllipse(33.6, 53.9, 8.8, 11.2);
    path.addEllipse(57.6, 53.9, 8.8, 11.2);
    path.setFillRule(Qt::OddEvenFill);
    return path;
}

}

void paintMurkel(QPainter& painter, qreal size, const MurkelColors& colors)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / designSize, size / designSize);
    const QPen line(colors.line, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    const auto draw = [&](const QPainterPath& shape, const QColor& fill) {
        painter.fillPath(shape, fill);
        painter.strokePath(shape, line);
    };
    draw(Shape::leftEar, face);
    draw(Shape::rightEar, face);
    draw(Shape::face, face);
    if (colors.showCheeks) {
        painter.fillPath(Shape::leftCheek, cheek);
        painter.fillPath(Shape::rightCheek, cheek);
    }
    draw(Shape::leftEye, face);
    draw(Shape::rightEye, face);
    draw(Shape::beard, colors.beard);
    draw(Shape::smile, colors.beard);
    draw(Shape::nose, face);
    draw(Shape::hat, colors.hat);
    draw(Shape::hatFold, colors.hat);
    painter.restore();
}

void paintMurkelGlyph(QPainter& painter, qreal size, const QColor& color)
{
    static const auto glyph = makeGlyph();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / designSize, size / designSize);
    painter.fillPath(glyph, color);
    painter.restore();
}

}
