#include "TinkraSystemLinux/OverlayRoute.h"

#include <wayland-client.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace Tinkra::System {

namespace {

struct Compositor {
    bool answers = false;
    bool offersLayerShell = false;
};

void noteGlobal(void* data, wl_registry*, std::uint32_t, const char* interface, std::uint32_t)
{
    if (std::string_view(interface) == "zwlr_layer_shell_v1")
        static_cast<Compositor*>(data)->offersLayerShell = true;
}

void ignoreRemoval(void*, wl_registry*, std::uint32_t) { }

Compositor askCompositor()
{
    Compositor compositor;
    const char* name = std::getenv("WAYLAND_DISPLAY");
    if (name == nullptr || *name == '\0')
        return compositor;
    const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(
        wl_display_connect(nullptr), &wl_display_disconnect);
    if (!display)
        return compositor;
    auto* registry = wl_display_get_registry(display.get());
    constexpr wl_registry_listener listener{.global = noteGlobal, .global_remove = ignoreRemoval};
    wl_registry_add_listener(registry, &listener, &compositor);
    compositor.answers = wl_display_roundtrip(display.get()) >= 0;
    wl_registry_destroy(registry);
    return compositor;
}

}

OverlayRoute findOverlayRoute()
{
    const auto compositor = askCompositor();
    const char* display = std::getenv("DISPLAY");
    const bool hasX11 = display != nullptr && *display != '\0';
    if (compositor.offersLayerShell)
        return OverlayRoute::LayerShell;
    if (compositor.answers)
        return hasX11 ? OverlayRoute::XWayland : OverlayRoute::PlainWayland;
    return hasX11 ? OverlayRoute::X11 : OverlayRoute::None;
}

}
