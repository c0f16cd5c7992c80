#pragma once

#include "TinkraSystem/Desktop/Geometry.h"
#include "TinkraSystem/Desktop/Screens.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace Tinkra::System {

/// NSWindowStyleMaskNonactivatingPanel, alone: no title bar, no frame, and showing the panel activates
/// nothing.
inline constexpr std::uint32_t kNonactivatingPanelStyle = 128;

/// NSScreenSaverWindowLevel: above the menu bar and full-screen windows.
inline constexpr int kScreenSaverWindowLevel = 1000;

/// Parts of NSWindowCollectionBehavior.
enum CollectionBehavior : std::uint32_t {
    CanJoinAllSpaces = 1,
    Stationary = 16,
    IgnoresCycle = 64,
    FullScreenAuxiliary = 256,
};

/// What a panel is like; set once, before it shows.
struct OverlayPanelProperties {
    Rect contentRect;
    std::uint32_t styleMask = kNonactivatingPanelStyle;
    bool buffered = true;
    bool deferred = false;
    bool floatingPanel = false;
    int level = 0;
    std::uint32_t collectionBehavior = 0; ///< `CollectionBehavior`s, joined by "or"
    bool clearBackground = false;
    bool opaque = true;
    bool hasShadow = true;
    bool hidesOnDeactivate = true;
    bool movableByBackground = false;
    bool releasedWhenClosed = true;

    friend bool operator==(const OverlayPanelProperties&, const OverlayPanelProperties&) = default;
};

/// How a motion is spread over its duration (CAMediaTimingFunctionName).
enum class AnimationTiming {
    EaseIn, ///< cubic Bezier (0.42, 0) (1, 1)
    EaseOut, ///< cubic Bezier (0, 0) (0.58, 1)
};

/// What a panel shows; its kind belongs to the toolkit of the views.
class PanelContent {
public:
    virtual ~PanelContent() = default;
};

/// A window of ours above everything else. Main thread only. While it moves, the panel is kept by whoever the
/// completion holds: an implementation lets go of the completion before it calls it.
class OverlayPanel {
public:
    virtual ~OverlayPanel() = default;

    /// Where the panel is, wherever the user has dragged it.
    virtual Rect frame() = 0;

    /// The screen that holds the panel; nothing while it is on none.
    virtual std::optional<Screen> screen() = 0;

    /// Moves the panel at once, without drawing it anew.
    virtual void setFrame(Rect frame) = 0;

    /// Shows the panel on top without taking the keyboard from anybody.
    virtual void orderFrontRegardless() = 0;

    /// Moves the panel to `frame` within `duration` seconds and then calls `completed`, if there is one.
    virtual void animateFrame(
        Rect frame, double duration, AnimationTiming timing, std::function<void()> completed) = 0;

    virtual void close() = 0;
};

/// Makes overlay panels.
class OverlayPanels {
public:
    virtual ~OverlayPanels() = default;

    virtual std::shared_ptr<OverlayPanel> makePanel(
        const OverlayPanelProperties& properties, std::unique_ptr<PanelContent> content) = 0;
};

}
