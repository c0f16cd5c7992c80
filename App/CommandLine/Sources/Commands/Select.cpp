#include "Commands/Commands.h"

#include "PrintableText.h"

#include <algorithm>
#include <exception>
#include <ostream>

namespace Tinkra::CommandLine {

namespace {

bool isKnown(const Text& id, const std::vector<CalendarRef>& calendars)
{
    return std::ranges::any_of(calendars, [&](const CalendarRef& calendar) { return calendar.id == id; });
}

std::string nameOf(const Text& id, const std::vector<CalendarRef>& calendars)
{
    const auto found = std::ranges::find(calendars, id, &CalendarRef::id);
    return found == calendars.end() ? id.utf8() : found->accountName.utf8() + " / " + found->title.utf8();
}

}

Task<ExitCode> changeSelection(SessionPtr session, Selection selection, std::vector<std::string> ids)
{
    std::vector<CalendarRef> calendars;
    try {
        calendars = co_await calendarsToChooseFrom(session);
    } catch (const std::exception& error) {
        session->complain(std::string("Couldn't read calendars: ") + error.what());
        co_return ExitCode::Failure;
    }

    auto configuration = session->settings->load();
    auto& selected = configuration.monitoring.selectedCalendarIDs;
    for (const auto& id : ids) {
        // One that has vanished can still be taken out.
        const bool mayBeGone = selection == Selection::Remove && selected.contains(id);
        if (!mayBeGone && !isKnown(id, calendars)) {
            session->complain("There is no calendar \"" + id
                + "\"; \"tinkra calendars\" lists the identifiers. Nothing was changed.");
            co_return ExitCode::Failure;
        }
    }

    if (!co_await session->provider->requestAccess()) {
        session->complain(
            "Calendars may not be read; run \"tinkra doctor\" to see what is missing. Nothing was changed.");
        co_return ExitCode::Failure;
    }

    for (const auto& id : ids) {
        if (selection == Selection::Add)
            selected.insert(id);
        else
            selected.erase(id);
    }
    session->settings->save(configuration);
    if (session->settings->load() != configuration) {
        session->complain("The selection could not be saved, and no alarm was changed.");
        co_return ExitCode::Failure;
    }

    for (const auto& id : ids)
        session->out << (selection == Selection::Add ? "Monitored: " : "No longer monitored: ")
                     << printable(nameOf(id, calendars)) << '\n';
    if (!co_await session->scheduler->requestAuthorization())
        session->complain(
            "Nothing can show notifications now; run \"tinkra doctor\" to see what is missing.");
    co_return co_await synchronize(session, Format::Table);
}

}
