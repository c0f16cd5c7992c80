#pragma once

#include "TinkraSystem/Desktop/OverlayPanel.h"

namespace Tinkra::System {

/// Panels as windows of Qt Quick; their content must be a `QuickPanelContent`. Of a panel's properties those
/// are honoured that this system has: size and movability. Every panel floats above everything, joins every
/// workspace, has a clear background without a shadow of the system's, and takes the keyboard from nobody.
class OverlayPanelsLinux final : public OverlayPanels {
public:
    std::shared_ptr<OverlayPanel> makePanel(
        const OverlayPanelProperties& properties, std::unique_ptr<PanelContent> content) override;
};

}
