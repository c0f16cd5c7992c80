// virtual-pointer WIDTH HEIGHT: a pointer of a Wayland compositor that obeys lines of standard input: "move X
// Y", "press", "release". Answers each with a line once the compositor has heard of it.

#include <wayland-client.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

extern const wl_interface pointerInterface;

// The part of wlr-virtual-pointer-unstable-v1, version 1, that is used.
// https://wayland.app/protocols/wlr-virtual-pointer-unstable-v1
std::array<const wl_interface*, 5> plain{};
std::array<const wl_interface*, 2> newPointer{&wl_seat_interface, &pointerInterface};
const std::array managerRequests{wl_message{"create_virtual_pointer", "?on", newPointer.data()}};
const std::array pointerRequests{
    wl_message{"motion", "uff", plain.data()},
    wl_message{"motion_absolute", "uuuuu", plain.data()},
    wl_message{"button", "uuu", plain.data()},
    wl_message{"axis", "uuf", plain.data()},
    wl_message{"frame", "", plain.data()},
};
const wl_interface managerInterface{"zwlr_virtual_pointer_manager_v1", 1,
    static_cast<int>(managerRequests.size()), managerRequests.data(), 0, nullptr};
const wl_interface pointerInterface{"zwlr_virtual_pointer_v1", 1, static_cast<int>(pointerRequests.size()),
    pointerRequests.data(), 0, nullptr};

enum Request : std::uint32_t { MotionAbsolute = 1, Button = 2, Frame = 4 };
constexpr std::uint32_t kLeftButton = 0x110; // BTN_LEFT of linux/input-event-codes.h

void bindManager(
    void* manager, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t)
{
    if (std::string(interface) == managerInterface.name)
        *static_cast<wl_proxy**>(manager) =
            static_cast<wl_proxy*>(wl_registry_bind(registry, name, &managerInterface, 1));
}

void ignoreRemoval(void*, wl_registry*, std::uint32_t) { }

}

int main(int, char** arguments)
{
    auto* display = wl_display_connect(nullptr);
    if (display == nullptr)
        return 1;
    wl_proxy* manager = nullptr;
    auto* registry = wl_display_get_registry(display);
    constexpr wl_registry_listener listener{.global = bindManager, .global_remove = ignoreRemoval};
    wl_registry_add_listener(registry, &listener, &manager);
    wl_display_roundtrip(display);
    if (manager == nullptr)
        return 1;
    auto* pointer = wl_proxy_marshal_constructor(manager, 0, &pointerInterface, nullptr, nullptr);
    wl_display_roundtrip(display);

    const auto width = static_cast<std::uint32_t>(std::atoi(arguments[1]));
    const auto height = static_cast<std::uint32_t>(std::atoi(arguments[2]));
    std::uint32_t time = 0;
    std::array<char, 100> line{};
    while (std::fgets(line.data(), line.size(), stdin) != nullptr) {
        std::uint32_t x = 0;
        std::uint32_t y = 0;
        ++time;
        if (std::sscanf(line.data(), "move %u %u", &x, &y) == 2)
            wl_proxy_marshal(pointer, MotionAbsolute, time, x, y, width, height);
        else
            wl_proxy_marshal(pointer, Button, time, kLeftButton, line[0] == 'p' ? 1U : 0U);
        wl_proxy_marshal(pointer, Frame);
        wl_display_roundtrip(display);
        std::puts("done");
        std::fflush(stdout);
    }
    return 0;
}
