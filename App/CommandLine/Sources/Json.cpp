#include "Json.h"

#include "TimeText.h"

namespace Tinkra::CommandLine {

std::string jsonText(const Json& document)
{
    return document.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json toJson(const ScheduledAlarm& alarm)
{
    return {
        {"id", alarm.id.utf8()},
        {"title", alarm.title.utf8()},
        {"fireDate", utcText(alarm.fireDate)},
        {"meetingStart", utcText(alarm.meetingStart)},
        {"meetingID", alarm.meetingID.utf8()},
        {"calendarID", alarm.calendarID.utf8()},
    };
}

}
