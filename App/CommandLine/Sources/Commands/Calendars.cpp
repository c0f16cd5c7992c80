#include "Commands/Commands.h"

#include "Json.h"
#include "Table.h"

#include <exception>
#include <ostream>
#include <stdexcept>

namespace Tinkra::CommandLine {

namespace {

void printTable(
    const Session& session, const std::vector<CalendarRef>& calendars, const CalendarIDs& monitored)
{
    if (calendars.empty()) {
        session.out << "There are no calendars. Run \"tinkra doctor\" to see where they are looked for.\n";
        return;
    }
    Table table({"MONITORED", "ACCOUNT", "CALENDAR", "COLOUR", "IDENTIFIER"});
    for (const auto& calendar : calendars)
        table.add({monitored.contains(calendar.id) ? "yes" : "no", calendar.accountName.utf8(),
            calendar.title.utf8(), calendar.colorHex ? calendar.colorHex->utf8() : "", calendar.id.utf8()});
    table.print(session.out);
}

void printJson(
    const Session& session, const std::vector<CalendarRef>& calendars, const CalendarIDs& monitored)
{
    auto document = Json::array();
    for (const auto& calendar : calendars) {
        Json object{{"id", calendar.id.utf8()}, {"title", calendar.title.utf8()},
            {"accountName", calendar.accountName.utf8()}};
        if (calendar.colorHex)
            object["colorHex"] = calendar.colorHex->utf8();
        object["monitored"] = monitored.contains(calendar.id);
        document.push_back(std::move(object));
    }
    session.out << jsonText(document) << '\n';
}

}

Task<std::vector<CalendarRef>> calendarsToChooseFrom(SessionPtr session)
{
    if (!co_await session->chooser->requestAccess())
        throw std::runtime_error(
            "no folder of calendars can be reached. Run \"tinkra doctor\" to see which.");
    co_return co_await session->chooser->availableCalendars();
}

Task<ExitCode> listCalendars(SessionPtr session, Format format)
{
    std::vector<CalendarRef> calendars;
    try {
        calendars = co_await calendarsToChooseFrom(session);
    } catch (const std::exception& error) {
        session->complain(std::string("Couldn't read calendars: ") + error.what());
        co_return ExitCode::Failure;
    }
    auto missing = session->settings->load().monitoring.selectedCalendarIDs;
    if (format == Format::Json)
        printJson(*session, calendars, missing);
    else
        printTable(*session, calendars, missing);
    for (const auto& calendar : calendars)
        missing.erase(calendar.id);
    for (const auto& id : missing)
        session->complain("Monitored, but not found: " + id.utf8());
    co_return ExitCode::Success;
}

}
