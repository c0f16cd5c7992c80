#include "Commands/Commands.h"

#include "Json.h"
#include "Table.h"
#include "TimeText.h"

#include "TinkraCore/MonitoringService.h"
#include "TinkraCore/UsableSettings.h"

#include <algorithm>
#include <exception>
#include <map>
#include <ostream>

namespace Tinkra::CommandLine {

namespace {

/// How far ahead alarms are armed.
constexpr Seconds horizon = std::chrono::days(30);

using Requests = std::map<Text, System::NotificationRequest>;

Task<Requests> pendingByIdentifier(std::shared_ptr<System::NotificationCenter> center)
{
    const auto pending = co_await center->pendingRequests();
    Requests requests;
    for (const auto& request : pending)
        requests.insert_or_assign(request.identifier, request);
    co_return requests;
}

std::string counted(std::size_t count, const char* what)
{
    return std::to_string(count) + (count == 1 ? " alarm " : " alarms ") + what;
}

void printTable(const Session& session, const ReconcileResult& result, const Requests& before)
{
    Table table({"", "ALARM", "MEETING"});
    for (const auto& id : result.toRemove) {
        const auto found = before.find(id);
        if (found == before.end())
            table.add({"cancelled", "", id.utf8()});
        else
            table.add({"cancelled", localText(found->second.trigger.components), found->second.content.body});
    }
    for (const auto& alarm : result.toAdd)
        table.add({"armed", localText(session.services.localCalendar->components(alarm.fireDate)),
            alarm.title.utf8()});
    if (table.isEmpty()) {
        session.out << "Nothing has changed.\n";
        return;
    }
    table.print(session.out);
    session.out << counted(result.toAdd.size(), "armed") << ", "
                << counted(result.toRemove.size(), "cancelled") << ".\n";
}

void printJson(const Session& session, const ReconcileResult& result)
{
    auto added = Json::array();
    for (const auto& alarm : result.toAdd)
        added.push_back(toJson(alarm));
    auto removed = Json::array();
    for (const auto& id : result.toRemove)
        removed.push_back(id.utf8());
    session.out << jsonText({{"added", std::move(added)}, {"removed", std::move(removed)}}) << '\n';
}

/// Names the files that no alarm can come from.
Task<> complainOfFilesLeftOut(SessionPtr session)
{
    constexpr std::size_t named = 5;
    const auto files = co_await session->services.healthChecks->filesLeftOut();
    for (std::size_t i = 0; i < std::min(files.size(), named); ++i)
        session->complain("Left out: " + files[i]);
    if (files.size() > named)
        session->complain("Left out are " + std::to_string(files.size() - named)
            + " more files; \"tinkra doctor\" names them.");
}

/// The monitored calendars that are not there.
Task<CalendarIDs> missingCalendars(SessionPtr session, CalendarIDs monitored)
{
    for (const auto& calendar : co_await session->provider->availableCalendars())
        monitored.erase(calendar.id);
    co_return monitored;
}

}

Task<ExitCode> synchronize(SessionPtr session, Format format)
{
    // A service that cannot be reached lists nothing and is told nothing; without this question, a pass that
    // has nothing to arm would look like a success.
    const auto service = co_await session->services.healthChecks->notificationService();
    if (service.level == System::HealthFinding::Level::Failure) {
        session->complain("Sync failed: " + service.finding + " " + service.remedy);
        co_return ExitCode::Failure;
    }

    const auto configuration = usable(session->settings->load());
    if (!configuration.masterEnabled)
        session->complain("Alarms are switched off, so that all of them are cancelled.");
    else if (configuration.monitoring.selectedCalendarIDs.empty())
        session->complain("No calendar is monitored; \"tinkra select\" chooses some.");

    const auto before = co_await pendingByIdentifier(session->services.notificationCenter);
    MonitoringService monitoring(
        session->provider, session->scheduler, configuration, horizon, session->executor);
    ReconcileResult result;
    try {
        // All of them at once: more likely a file system is away than that somebody removed them. A program
        // that has just started has no earlier state to tell the two apart by.
        const auto& monitored = configuration.monitoring.selectedCalendarIDs;
        const auto missing = co_await missingCalendars(session, monitored);
        if (configuration.masterEnabled && !monitored.empty() && missing.size() == monitored.size()) {
            session->complain("Sync failed: no monitored calendar is there, so that no alarm was changed; "
                              "\"tinkra doctor\" says where they are looked for, and \"tinkra deselect\" "
                              "lets go of those that are gone.");
            co_return ExitCode::Failure;
        }
        for (const auto& id : missing)
            session->complain("Monitored, but not found: " + id.utf8());
        result = co_await monitoring.sync(session->services.clock->now());
    } catch (const std::exception& error) {
        session->complain(std::string("Sync failed: ") + error.what());
        co_return ExitCode::Failure;
    }
    co_await complainOfFilesLeftOut(session);
    co_await session->services.healthChecks->acknowledgeRearmed();
    if (format == Format::Json)
        printJson(*session, result);
    else
        printTable(*session, result, before);
    co_return ExitCode::Success;
}

}
