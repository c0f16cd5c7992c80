#pragma once

namespace Tinkra::System {

// SIGTERM, SIGINT and SIGHUP end the program in order: the main loop is left, and what follows it is done.

void holdQuitSignals(); ///< before any thread starts
void quitOnSignals(); ///< once there is a main loop; what was held counts

}
