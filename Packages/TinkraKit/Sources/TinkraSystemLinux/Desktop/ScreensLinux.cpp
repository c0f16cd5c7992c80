#include "TinkraSystemLinux/Desktop/ScreensLinux.h"

#include "TinkraSystemLinux/Desktop/QtGeometry.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace Tinkra::System {

namespace {

/// Qt keeps a stand-in without a name or a size while there is no screen.
bool isReal(const QScreen* screen)
{
    return screen != nullptr && !screen->geometry().isEmpty();
}

Screen describe(const QScreen& screen)
{
    return {.frame = productRect(screen.geometry()), .visibleFrame = productRect(screen.availableGeometry())};
}

}

std::vector<Screen> ScreensLinux::screens()
{
    std::vector<Screen> screens;
    for (const auto* screen : QGuiApplication::screens()) {
        if (isReal(screen))
            screens.push_back(describe(*screen));
    }
    return screens;
}

std::optional<Screen> ScreensLinux::mainScreen()
{
    const auto* window = QGuiApplication::focusWindow();
    const auto* screen = window != nullptr ? window->screen() : QGuiApplication::primaryScreen();
    return isReal(screen) ? std::optional(describe(*screen)) : std::nullopt;
}

Point ScreensLinux::pointerLocation()
{
    return productPoint(QCursor::pos());
}

}
