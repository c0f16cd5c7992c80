#include "NotificationDaemon/CrashPoint.h"

#include <cstdlib>
#include <string>

namespace Tinkra::NotificationDaemon {

void crashPoint(std::string_view name, std::string_view identifier)
{
    static const char* const wanted = std::getenv("TINKRA_TEST_CRASH_AT");
    if (wanted == nullptr) [[likely]]
        return;
    std::string here(name);
    if (!identifier.empty())
        here.append(":").append(identifier);
    if (here == wanted)
        std::abort();
}

}
