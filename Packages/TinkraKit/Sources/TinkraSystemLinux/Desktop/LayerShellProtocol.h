#pragma once

#include <wayland-client.h>

#include <array>
#include <cstdint>

/// The part of wlr-layer-shell-unstable-v1, version 1, that we use, as libwayland wants it described.
/// https://wayland.app/protocols/wlr-layer-shell-unstable-v1
namespace Tinkra::System::LayerShellProtocol {

enum ShellRequest : std::uint32_t { ShellGetLayerSurface };

enum SurfaceRequest : std::uint32_t {
    SurfaceSetSize,
    SurfaceSetAnchor,
    SurfaceSetExclusiveZone,
    SurfaceSetMargin,
    SurfaceSetKeyboardInteractivity,
    SurfaceGetPopup,
    SurfaceAckConfigure,
    SurfaceDestroy,
};

inline constexpr std::uint32_t kOverlayLayer = 3;
inline constexpr std::uint32_t kAnchorTop = 1;
inline constexpr std::uint32_t kAnchorLeft = 4;

/// The events of a surface, in their order.
struct Listener {
    void (*configure)(void*, wl_proxy*, unsigned serial, unsigned width, unsigned height);
    void (*closed)(void*, wl_proxy*);
};

extern const wl_interface layerShell;
extern const wl_interface layerSurface;

}
