#include "Commands/Commands.h"

#include "Json.h"
#include "PrintableText.h"
#include "TimeText.h"

#include "TinkraCore/Models/Coding.h"
#include "TinkraCore/UsableSettings.h"

#include <algorithm>
#include <array>
#include <exception>
#include <ostream>

namespace Tinkra::CommandLine {

namespace {

using System::HealthFinding;
using Level = HealthFinding::Level;
using Findings = std::vector<HealthFinding>;

constexpr std::array levelNames{"ok", "warning", "failure"};

// A clock before this program was written, or a lifetime after it, has not been set.
constexpr Instant earliest = std::chrono::sys_days(std::chrono::year(2026) / 1 / 1);
constexpr Instant latest = std::chrono::sys_days(std::chrono::year(2100) / 1 / 1);

HealthFinding lookAtClock(Instant now)
{
    if (now < earliest || now > latest)
        return {"Clock", Level::Failure, "The clock says " + utcText(now) + ", which cannot be right.",
            "Set the machine's clock."};
    return {"Clock", Level::Ok, "The clock says " + utcText(now) + ".", ""};
}

void lookAtConfiguration(const std::optional<std::string>& document, Findings& findings)
{
    const std::string subject = "Configuration";
    if (!document) {
        findings.push_back(
            {subject, Level::Warning, "No configuration is stored, so that no calendar is monitored.",
                "Choose calendars with \"tinkra select\"."});
        return;
    }
    try {
        const auto configuration = decode<TinkraConfiguration>(*document);
        findings.push_back({subject, Level::Ok, "The stored configuration can be read.", ""});
        if (usable(configuration) != configuration)
            findings.push_back({subject, Level::Warning,
                "The stored lead time or snooze is out of reach; the nearest usable one is taken.",
                "Set the lead time and the snooze again."});
        if (!configuration.masterEnabled)
            findings.push_back(
                {subject, Level::Warning, "Alarms are switched off.", "Switch them on in the application."});
        else if (configuration.monitoring.selectedCalendarIDs.empty())
            findings.push_back({subject, Level::Warning, "No calendar is monitored.",
                "Choose calendars with \"tinkra select\"."});
    } catch (const DecodingError& error) {
        findings.push_back({subject, Level::Failure,
            std::string("The stored configuration cannot be understood (") + error.what()
                + "); the defaults are used and no calendar is monitored.",
            "Choose calendars with \"tinkra select\"; this replaces the stored configuration."});
    }
}

Task<Findings> lookAtCalendars(SessionPtr session)
{
    const std::string subject = "Calendars";
    Findings findings;
    switch (session->services.eventStore->authorizationStatus()) {
    case System::CalendarAuthorization::FullAccess:
        break;
    case System::CalendarAuthorization::NotDetermined:
        findings.push_back({subject, Level::Warning, "Access to calendars has not been granted yet.",
            "Choose calendars with \"tinkra select\"; this grants it."});
        co_return findings;
    default:
        findings.push_back({subject, Level::Failure, "Calendars may not be read.",
            "See to the folders below, then choose calendars with \"tinkra select\"."});
        co_return findings;
    }
    try {
        const auto selected = session->settings->load().monitoring.selectedCalendarIDs;
        const auto calendars = co_await session->provider->availableCalendars();
        auto missing = selected;
        for (const auto& calendar : calendars)
            missing.erase(calendar.id);
        if (calendars.empty())
            findings.push_back({subject, Level::Warning, "There are no calendars.",
                "Put calendars into one of the folders below."});
        else
            findings.push_back({subject, Level::Ok,
                "Calendars can be read; there are " + std::to_string(calendars.size()) + ".", ""});
        for (const auto& id : missing)
            findings.push_back(
                {subject, Level::Warning, "The monitored calendar \"" + id.utf8() + "\" is not there.",
                    "Bring it back, or run \"tinkra deselect\" with its identifier."});
        const auto now = session->services.clock->now();
        co_await session->provider->meetings(selected, now, now + std::chrono::days(30));
    } catch (const std::exception& error) {
        findings.push_back({subject, Level::Failure, std::string("Couldn't read calendars: ") + error.what(),
            "Mend what it names; until then the alarms stay as they are."});
    }
    co_return findings;
}

void printTable(const Session& session, const Findings& findings)
{
    constexpr std::size_t levelWidth = 9;
    for (const auto& [subject, level, finding, remedy] : findings) {
        const std::string name = levelNames[static_cast<std::size_t>(level)];
        session.out << name << std::string(levelWidth - name.size(), ' ') << subject << ": "
                    << printable(finding) << '\n';
        if (!remedy.empty())
            session.out << std::string(levelWidth, ' ') << "-> " << printable(remedy) << '\n';
    }
}

void printJson(const Session& session, const Findings& findings)
{
    auto document = Json::array();
    for (const auto& [subject, level, finding, remedy] : findings)
        document.push_back({{"subject", subject}, {"level", levelNames[static_cast<std::size_t>(level)]},
            {"finding", finding}, {"remedy", remedy}});
    session.out << jsonText(document) << '\n';
}

bool isBroken(const Findings& findings)
{
    return std::ranges::any_of(findings, [](const auto& finding) { return finding.level == Level::Failure; });
}

}

Task<ExitCode> diagnose(SessionPtr session, Format format)
{
    Findings findings;
    findings.push_back(lookAtClock(session->services.clock->now()));
    lookAtConfiguration(session->services.defaults->data(Session::configurationKey), findings);
    for (auto& finding : co_await lookAtCalendars(session))
        findings.push_back(std::move(finding));
    for (auto& finding : co_await session->services.healthChecks->run())
        findings.push_back(std::move(finding));

    if (format == Format::Json)
        printJson(*session, findings);
    else
        printTable(*session, findings);
    co_return isBroken(findings) ? ExitCode::Failure : ExitCode::Success;
}

}
