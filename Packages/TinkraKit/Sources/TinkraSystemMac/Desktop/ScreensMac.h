#pragma once

#include "TinkraSystem/Desktop/Screens.h"

#import <AppKit/AppKit.h>

namespace Tinkra::System {

/// NSScreen and NSEvent.
class ScreensMac final : public Screens {
public:
    std::vector<Screen> screens() override;
    std::optional<Screen> mainScreen() override;
    Point pointerLocation() override;
};

std::optional<Screen> optionalScreenFrom(NSScreen* _Nullable screen);

}
