#include "TinkraSystemLinux/Desktop/LayerShellProtocol.h"

namespace Tinkra::System::LayerShellProtocol {

namespace {

// One entry per argument of a message; a null one is a plain value, or an object of any kind.
std::array<const wl_interface*, 5> plain{};
std::array<const wl_interface*, 5> newLayerSurface{
    &layerSurface, &wl_surface_interface, &wl_output_interface, nullptr, nullptr};

const std::array shellRequests{
    wl_message{"get_layer_surface", "no?ous", newLayerSurface.data()},
};

const std::array surfaceRequests{
    wl_message{"set_size", "uu", plain.data()},
    wl_message{"set_anchor", "u", plain.data()},
    wl_message{"set_exclusive_zone", "i", plain.data()},
    wl_message{"set_margin", "iiii", plain.data()},
    wl_message{"set_keyboard_interactivity", "u", plain.data()},
    wl_message{"get_popup", "o", plain.data()},
    wl_message{"ack_configure", "u", plain.data()},
    wl_message{"destroy", "", plain.data()},
};

const std::array surfaceEvents{
    wl_message{"configure", "uuu", plain.data()},
    wl_message{"closed", "", plain.data()},
};

}

const wl_interface layerShell{
    "zwlr_layer_shell_v1", 1, static_cast<int>(shellRequests.size()), shellRequests.data(), 0, nullptr};
const wl_interface layerSurface{"zwlr_layer_surface_v1", 1, static_cast<int>(surfaceRequests.size()),
    surfaceRequests.data(), static_cast<int>(surfaceEvents.size()), surfaceEvents.data()};

}
