#pragma once

#include "TinkraSystem/Desktop/Screens.h"

namespace Tinkra::System {

/// The screens that Qt knows, the primary one first. Wayland tells nobody where the pointer is until it is
/// over a window of his; there the compositor chooses the panel's screen.
class ScreensLinux final : public Screens {
public:
    std::vector<Screen> screens() override;
    std::optional<Screen> mainScreen() override;
    Point pointerLocation() override;
};

}
