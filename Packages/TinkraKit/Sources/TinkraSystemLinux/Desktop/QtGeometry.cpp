#include "TinkraSystemLinux/Desktop/QtGeometry.h"

#include <QGuiApplication>
#include <QScreen>

namespace Tinkra::System {

namespace {

/// Where the product's y is 0.
int baseline()
{
    const auto* first = QGuiApplication::primaryScreen();
    return first == nullptr ? 0 : first->geometry().y() + first->geometry().height();
}

/// Where the product's x is 0.
int leftEdge()
{
    const auto* first = QGuiApplication::primaryScreen();
    return first == nullptr ? 0 : first->geometry().x();
}

}

Point productPoint(QPoint point)
{
    return {static_cast<double>(point.x() - leftEdge()), static_cast<double>(baseline() - point.y())};
}

Rect productRect(QRect rect)
{
    const auto corner = productPoint({rect.x(), rect.y() + rect.height()});
    return {corner, {static_cast<double>(rect.width()), static_cast<double>(rect.height())}};
}

QRect qtRect(const Rect& rect)
{
    return {qRound(rect.origin.x) + leftEdge(), baseline() - qRound(rect.maxY()), qRound(rect.size.width),
        qRound(rect.size.height)};
}

}
