#pragma once

#include "TinkraSystem/Desktop/OverlayPanel.h"

#include <memory>

namespace Tinkra::System {

/// A view of the toolkit inside a native view, an NSView, which it fills.
class EmbeddedView {
public:
    /// `content` must be `QuickPanelContent`; `nativeView`, of `size` points, must outlive this. Where the
    /// content takes no click, the window of a movable view can be dragged: the toolkit's view hides that it
    /// could.
    EmbeddedView(void* nativeView, Size size, std::unique_ptr<PanelContent> content, bool isMovable);
    ~EmbeddedView();
    EmbeddedView(const EmbeddedView&) = delete;
    EmbeddedView& operator=(const EmbeddedView&) = delete;

    /// Lets what is half transparent shine through. Called before the first window is made.
    static void prepare();

private:
    class Window;

    std::unique_ptr<Window> m_window;
};

}
