#include "TinkraSystemLinux/Desktop/X11Surface.h"

#include <QCursor>
#include <QGuiApplication>
#include <QWindow>

#include <string>
#include <vector>

// The macros of these make other headers unreadable.
#include <X11/Xlib.h>
#include <X11/extensions/shape.h>

namespace Tinkra::System {

namespace {

Display* display()
{
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->display() : nullptr;
}

}

bool X11Surface::isComposited() const
{
    auto* x11 = display();
    if (x11 == nullptr)
        return false;
    // Extended Window Manager Hints 1.5, "Compositing Managers"
    const auto name = "_NET_WM_CM_S" + std::to_string(DefaultScreen(x11));
    return XGetSelectionOwner(x11, XInternAtom(x11, name.c_str(), False)) != None;
}

void X11Surface::show()
{
    OverlaySurface::show();
    applyInputRegion();
    raise();
}

void X11Surface::setSolid(const QRegion& region)
{
    if (m_solid == region)
        return;
    m_solid = region;
    if (!isComposited())
        window().setMask(region); // what is outside does not exist
    applyInputRegion();
}

void X11Surface::applyInputRegion() const
{
    auto* x11 = display();
    if (x11 == nullptr || window().handle() == nullptr)
        return;
    const double scale = window().devicePixelRatio();
    std::vector<XRectangle> rectangles;
    for (const auto& rect : m_solid) {
        const auto left = qRound(rect.x() * scale);
        const auto top = qRound(rect.y() * scale);
        rectangles.push_back({static_cast<short>(left), static_cast<short>(top),
            static_cast<unsigned short>(qRound((rect.x() + rect.width()) * scale) - left),
            static_cast<unsigned short>(qRound((rect.y() + rect.height()) * scale) - top)});
    }
    XShapeCombineRectangles(x11, window().winId(), ShapeInput, 0, 0, rectangles.data(),
        static_cast<int>(rectangles.size()), ShapeSet, Unsorted);
    XFlush(x11);
}

// Where in the window the pointer is now may be old news; where it is on the screen is not.
QPoint X11Surface::drag(QPoint pressed, QPoint)
{
    const auto before = window().position();
    window().setPosition(QCursor::pos() - pressed);
    return window().position() - before;
}

void X11Surface::raise()
{
    window().raise();
}

}
