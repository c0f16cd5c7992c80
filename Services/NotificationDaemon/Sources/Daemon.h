#pragma once

namespace Tinkra::NotificationDaemon {

/// Serves until SIGTERM or SIGINT. The result is the exit status: 0 after such a signal, and when another
/// daemon already serves; 1 when the bus is gone.
int runDaemon();

}
