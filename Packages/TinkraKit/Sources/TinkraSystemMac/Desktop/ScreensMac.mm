#include "TinkraSystemMac/Desktop/ScreensMac.h"

#include "TinkraSystemMac/Desktop/GeometryMac.h"

namespace Tinkra::System {

namespace {

Screen screenFrom(NSScreen* _Nonnull screen)
{
    return {.frame = rectFrom(screen.frame), .visibleFrame = rectFrom(screen.visibleFrame)};
}

}

std::optional<Screen> optionalScreenFrom(NSScreen* screen)
{
    return screen == nil ? std::nullopt : std::optional(screenFrom(static_cast<NSScreen* _Nonnull>(screen)));
}

std::vector<Screen> ScreensMac::screens()
{
    std::vector<Screen> screens;
    for (NSScreen* screen in NSScreen.screens)
        screens.push_back(screenFrom(screen));
    return screens;
}

std::optional<Screen> ScreensMac::mainScreen()
{
    return optionalScreenFrom(NSScreen.mainScreen);
}

Point ScreensMac::pointerLocation()
{
    const NSPoint location = NSEvent.mouseLocation;
    return {location.x, location.y};
}

}
