#include "TinkraSystemLinux/Desktop/OverlaySurface.h"

#include "TinkraSystemLinux/Desktop/LayerSurface.h"
#include "TinkraSystemLinux/Desktop/X11Surface.h"

#include <QGuiApplication>
#include <QWindow>

namespace Tinkra::System {

void OverlaySurface::setGeometry(QRect geometry)
{
    m_window.setGeometry(geometry);
}

void OverlaySurface::show()
{
    m_window.show();
}

void OverlaySurface::setSolid(const QRegion& region)
{
    m_window.setMask(region);
}

QPoint OverlaySurface::drag(QPoint pressed, QPoint now)
{
    m_window.setPosition(m_window.position() + now - pressed);
    return now - pressed;
}

std::unique_ptr<OverlaySurface> makeOverlaySurface(QWindow& window)
{
    window.setFlags(Qt::BypassWindowManagerHint | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    const auto platform = QGuiApplication::platformName();
    if (platform == QLatin1String("xcb"))
        return std::make_unique<X11Surface>(window);
    if (platform.startsWith(QLatin1String("wayland")))
        return std::make_unique<LayerSurface>(window);
    return std::make_unique<OverlaySurface>(window);
}

}
