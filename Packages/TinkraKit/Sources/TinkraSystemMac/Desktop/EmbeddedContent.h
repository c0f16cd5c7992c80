#pragma once

#include "TinkraSystem/Desktop/OverlayPanel.h"

namespace Tinkra::System {

/// Panel content that can put itself into a native view.
class EmbeddedContent : public PanelContent {
public:
    /// `nativeView` is an NSView of `size` points, which outlives the content. Called once.
    virtual void embed(void* nativeView, Size size) = 0;
};

}
