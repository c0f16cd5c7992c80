#include "Commands/Commands.h"

#include "Json.h"
#include "Table.h"
#include "TimeText.h"

#include "TinkraCore/AlarmEngine.h"
#include "TinkraCore/UsableSettings.h"

#include <exception>
#include <map>
#include <ostream>

namespace Tinkra::CommandLine {

namespace {

void printTable(const Session& session, const std::vector<ScheduledAlarm>& alarms,
    const std::vector<CalendarRef>& calendars)
{
    std::map<Text, std::string> names;
    for (const auto& calendar : calendars)
        names.emplace(calendar.id, calendar.title.utf8());
    Table table({"ALARM", "MEETING STARTS", "MEETING", "CALENDAR"});
    for (const auto& alarm : alarms)
        table.add({localText(session.services.localCalendar->components(alarm.fireDate)),
            localText(session.services.localCalendar->components(alarm.meetingStart)), alarm.title.utf8(),
            names[alarm.calendarID]});
    if (table.isEmpty())
        session.out << "There are no alarms in that time.\n";
    else
        table.print(session.out);
}

void printJson(const Session& session, const std::vector<ScheduledAlarm>& alarms)
{
    auto document = Json::array();
    for (const auto& alarm : alarms)
        document.push_back(toJson(alarm));
    session.out << jsonText(document) << '\n';
}

}

Task<ExitCode> listUpcoming(SessionPtr session, int days, Format format)
{
    const auto configuration = usable(session->settings->load());
    const auto selected = configuration.monitoring.selectedCalendarIDs;
    std::vector<ScheduledAlarm> alarms;
    std::vector<CalendarRef> calendars;
    if (!configuration.masterEnabled) {
        session->complain("Alarms are switched off, so that none is upcoming.");
    } else if (selected.empty()) {
        session->complain("No calendar is monitored; \"tinkra select\" chooses some.");
    } else {
        try {
            const auto now = session->services.clock->now();
            const auto meetings =
                co_await session->provider->meetings(selected, now, now + std::chrono::days(days));
            alarms = AlarmEngine().desiredAlarms(meetings, configuration.settings, selected, now);
            calendars = co_await session->provider->availableCalendars();
        } catch (const std::exception& error) {
            session->complain(std::string("Couldn't read calendars: ") + error.what());
            co_return ExitCode::Failure;
        }
    }
    if (format == Format::Json)
        printJson(*session, alarms);
    else
        printTable(*session, alarms, calendars);
    co_return ExitCode::Success;
}

}
