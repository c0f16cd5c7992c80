#include "AppModel/StatusText.h"

#include <cstdint>

namespace Tinkra {

std::string statusText(const TinkraConfiguration& configuration, const std::vector<ScheduledAlarm>& upcoming)
{
    const auto& selected = configuration.monitoring.selectedCalendarIDs;
    if (!configuration.masterEnabled)
        return "Paused";
    if (selected.empty())
        return "No calendars selected";
    if (!upcoming.empty())
        return "Next: " + upcoming.front().title.utf8();
    return "Watching " + std::to_string(selected.size()) + " calendar(s)";
}

std::string snoozedText(Seconds interval)
{
    return "Snoozed " + std::to_string(static_cast<std::int64_t>(interval / std::chrono::minutes(1)))
        + " min";
}

}
