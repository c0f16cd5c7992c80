#include "NotificationDaemon/Daemon.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr auto kHelp =
    "Usage: tinkra-notifierd [--version | --help]\n"
    "\n"
    "Keeps the alarms of Calendar Murkel and shows each as a notification at its time, whether or\n"
    "not the application runs. Started by the session bus when it is called, and at login.\n"
    "Ends on SIGTERM. Its store is $XDG_STATE_HOME/tinkra/notifications.db.\n";

}

int main(int argc, char** argv)
{
    if (argc == 1)
        return Tinkra::NotificationDaemon::runDaemon();
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::puts("tinkra-notifierd " TINKRA_VERSION);
        return 0;
    }
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(kHelp, stdout);
        return 0;
    }
    std::fputs(kHelp, stderr);
    return 2;
}
