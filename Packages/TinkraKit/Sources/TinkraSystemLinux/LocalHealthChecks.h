#pragma once

#include "TinkraSystem/HealthChecks.h"

#include <string>

namespace Tinkra::System {

// The checks that look at files and limits of the machine alone.

HealthFinding lookAtLoginEntry(); ///< the XDG autostart entry of the notification daemon
HealthFinding lookAtPreferences(); ///< the files of `DefaultsLinux`
HealthFinding lookAtChangeNotices(); ///< inotify
HealthFinding lookAtTimeZone();
HealthFinding lookAtDisplay(); ///< how an alarm comes to lie above full-screen programs
HealthFinding lookAtSound(); ///< the default device of the sound server, and the sound "Glass"

/// Where the notification daemon keeps its store.
std::string notificationStoreFolder();

}
