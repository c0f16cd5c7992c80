#pragma once

#include "TinkraSystem/Desktop/OverlayPanel.h"
#include "TinkraSystem/Desktop/Screens.h"

#include <memory>

namespace Tinkra::System {

/// What a program with windows asks of its operating system, besides `SystemServices`.
struct DesktopServices {
    std::shared_ptr<Screens> screens;
    std::shared_ptr<OverlayPanels> panels;
};

/// Chooses how the program shows its windows. Called before the toolkit, and any thread, starts.
void prepareDesktop();

/// The live services of the desktop, one set per process, once the toolkit has started. From then on, a
/// session that asks the program to end has it leave its main loop. The library of the operating system that
/// a program is linked with defines both.
DesktopServices makeDesktopServices();

}
