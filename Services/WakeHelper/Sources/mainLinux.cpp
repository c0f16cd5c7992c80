// tinkra-wakehelper [FOLDER [CLOCK]]: wakes the machine at the earliest time that a user's wake file asks
// for.

#include "WakeHelper/FolderWatch.h"
#include "WakeHelper/WakeAlarmLinux.h"
#include "WakeHelper/WakeFolder.h"

#include <poll.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

using namespace Tinkra::WakeHelper;

namespace {

// However often somebody writes, the folder is read no more often than this. An alarm is a minute away.
constexpr auto kRest = std::chrono::seconds(1);

void say(std::optional<std::int64_t> wake)
{
    if (wake)
        std::fprintf(
            stderr, "tinkra-wakehelper: the machine is woken at %lld\n", static_cast<long long>(*wake));
    else
        std::fprintf(stderr, "tinkra-wakehelper: no wake is wanted\n");
}

void waitForEither(int first, int second)
{
    std::array<pollfd, 2> descriptors{{{first, POLLIN, 0}, {second, POLLIN, 0}}};
    ::poll(descriptors.data(), descriptors.size(), -1);
}

}

int main(int argumentCount, char** arguments)
{
    const std::filesystem::path folder = argumentCount > 1 ? arguments[1] : "/var/lib/CalendarMurkel";
    const FolderWatch watch(folder);
    WakeAlarmLinux alarm(argumentCount > 2 ? arguments[2] : "/sys/class/rtc/rtc0/wakealarm");
    if (alarm.means() == WakeAlarmLinux::Means::Nothing) {
        std::fprintf(stderr, "tinkra-wakehelper: neither a wake timer nor the real-time clock can be used\n");
        return 1;
    }

    std::optional<std::optional<std::int64_t>> told;
    for (;;) {
        // Watched before it is read, so that no change goes unseen.
        if (!watch.renew()) {
            std::fprintf(stderr, "tinkra-wakehelper: there is no folder %s\n", folder.c_str());
            return 1;
        }
        const auto wake = earliestWake(folder, std::time(nullptr));
        if (!alarm.set(wake)) {
            std::fprintf(stderr, "tinkra-wakehelper: the wake cannot be set\n");
            return 1;
        }
        if (!told || *told != wake)
            say(wake);
        told = wake;

        waitForEither(watch.descriptor(), alarm.descriptor());
        std::this_thread::sleep_for(kRest);
        watch.acknowledge();
        alarm.acknowledge();
    }
}
