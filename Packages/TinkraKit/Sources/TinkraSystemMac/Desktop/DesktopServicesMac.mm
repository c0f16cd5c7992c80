#include "TinkraSystem/Desktop/DesktopServices.h"

#include "TinkraSystemMac/Desktop/EmbeddedView.h"
#include "TinkraSystemMac/Desktop/OverlayPanelMac.h"
#include "TinkraSystemMac/Desktop/ScreensMac.h"

#include <cstdlib>

namespace Tinkra::System {

void prepareDesktop()
{
    // The bundle says that this is an agent; the toolkit would make an ordinary application of it, and
    // activate it.
    ::setenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1", /* overwrite */ 1);
    EmbeddedView::prepare();
}

DesktopServices makeDesktopServices()
{
    return {
        .screens = std::make_shared<ScreensMac>(),
        .panels = std::make_shared<OverlayPanelsMac>(),
    };
}

}
