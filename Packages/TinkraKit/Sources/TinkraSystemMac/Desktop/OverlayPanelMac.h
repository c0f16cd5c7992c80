#pragma once

#include "TinkraSystem/Desktop/OverlayPanel.h"

namespace Tinkra::System {

/// Panels of our own class. A window of the toolkit cannot be turned into one: whether a click activates the
/// application is decided when the window is made.
class OverlayPanelsMac final : public OverlayPanels {
public:
    /// `content` must be `QuickPanelContent`.
    std::shared_ptr<OverlayPanel> makePanel(
        const OverlayPanelProperties& properties, std::unique_ptr<PanelContent> content) override;
};

}
