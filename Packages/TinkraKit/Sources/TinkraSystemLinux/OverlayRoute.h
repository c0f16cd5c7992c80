#pragma once

namespace Tinkra::System {

/// How a window of ours comes to lie above full-screen programs on this desktop.
enum class OverlayRoute {
    X11, ///< an override-redirect window
    LayerShell, ///< Wayland, where the compositor offers wlr-layer-shell
    XWayland, ///< Wayland without it: an override-redirect window on its X server
    PlainWayland, ///< neither: a full-screen program may cover the alarm
    None, ///< no display answers
};

/// Looks at WAYLAND_DISPLAY, at what the compositor offers, and at DISPLAY.
OverlayRoute findOverlayRoute();

}
