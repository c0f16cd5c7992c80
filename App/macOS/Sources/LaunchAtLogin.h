#pragma once

#include "TinkraSystem/LoginItem.h"

namespace Tinkra {

/// Launching at login as an option. Keeps nothing: the system's record of the login item is the only truth.
namespace LaunchAtLogin {

/// Registers or unregisters the application unless it is so already. A failure is silent; ask `isEnabled`
/// afterwards. A registration that waits for approval counts as off and is left in place.
void set(System::LoginItem& item, bool enabled);

bool isEnabled(System::LoginItem& item);

}

}
