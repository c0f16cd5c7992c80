#pragma once

#include "TinkraSystem/Desktop/Geometry.h"

#include <optional>
#include <vector>

namespace Tinkra::System {

struct Screen {
    Rect frame;
    Rect visibleFrame; ///< the part that menu bars, docks and panels leave free

    friend bool operator==(const Screen&, const Screen&) = default;
};

/// The screens of the desktop, read afresh at each call. Main thread only.
class Screens {
public:
    virtual ~Screens() = default;

    /// In the system's own order; empty when there is no screen at all.
    virtual std::vector<Screen> screens() = 0;

    /// The screen with the keyboard focus.
    virtual std::optional<Screen> mainScreen() = 0;

    virtual Point pointerLocation() = 0;
};

}
