#include "WakeAlarmMac.h"
#include "WakeFileReader.h"

#include <cstdlib>
#include <ctime>

int main()
{
    using namespace Tinkra::WakeHelper;

    const auto wake = wakeWanted("/Users/Shared/CalendarMurkel/wake", std::time(nullptr));
    return setWakeAlarm(wake) ? EXIT_SUCCESS : EXIT_FAILURE;
}
