#include "TinkraSystem/Desktop/DesktopServices.h"

#include "TinkraSystemLinux/Desktop/OverlayPanelLinux.h"
#include "TinkraSystemLinux/Desktop/QuitSignals.h"
#include "TinkraSystemLinux/Desktop/ScreensLinux.h"
#include "TinkraSystemLinux/OverlayRoute.h"

#include <QQuickWindow>

#include <cstdlib>

namespace Tinkra::System {

namespace {

// Whoever has set one of these knows better.
void setDefault(const char* variable, const char* value)
{
    ::setenv(variable, value, /* overwrite */ 0);
}

}

void prepareDesktop()
{
    holdQuitSignals();
    const auto route = findOverlayRoute();
    setDefault("QT_QPA_PLATFORM",
        route == OverlayRoute::LayerShell || route == OverlayRoute::PlainWayland ? "wayland" : "xcb");
    setDefault("QT_QUICK_BACKEND", "software");
    if (route == OverlayRoute::LayerShell)
        setDefault("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1"); // surfaces get their role from us
    QQuickWindow::setDefaultAlphaBuffer(true);
}

DesktopServices makeDesktopServices()
{
    quitOnSignals();
    return {
        .screens = std::make_shared<ScreensLinux>(),
        .panels = std::make_shared<OverlayPanelsLinux>(),
    };
}

}
