#include "Desk.h"

#include "Session.h"

#include "TinkraCore/Models/Coding.h"

#include <sstream>

namespace Tinkra::CommandLine {

Task<std::vector<System::HealthFinding>> FakeHealthChecks::run()
{
    co_return findings;
}

Task<System::HealthFinding> FakeHealthChecks::notificationService()
{
    co_return service;
}

Task<std::vector<std::string>> FakeHealthChecks::filesLeftOut()
{
    co_return leftOut;
}

Task<> FakeHealthChecks::acknowledgeRearmed()
{
    ++acknowledgements;
    co_return;
}

Desk::Desk()
{
    const std::vector<System::StoredCalendar> calendars{
        {.identifier = "Work/Team",
            .title = "Team",
            .sourceTitle = "Work",
            .colorComponents = {{1.0, 0.5, 0.0}}},
        {.identifier = "Home/Family", .title = "Family", .sourceTitle = "Home"},
    };
    const System::StoredEvent standup{
        .details = System::EventDetails{.eventIdentifier = "standup",
            .calendarItemIdentifier = "item",
            .calendarIdentifier = "Work/Team",
            .title = "Stand-up"},
        .start = today + std::chrono::hours(1),
        .end = today + std::chrono::hours(2),
    };
    for (const auto& calendarStore : {events, choice}) {
        calendarStore->setCalendars(calendars);
        calendarStore->setEvents({standup});
    }
}

ExitCode Desk::run(std::vector<std::string> arguments)
{
    std::vector<const char*> pointers{"tinkra"};
    for (const auto& argument : arguments)
        pointers.push_back(argument.c_str());
    std::istringstream input(in);
    std::ostringstream output;
    std::ostringstream errors;
    const auto makeServices = [this] {
        madeServices = true;
        return System::SystemServices{
            events, choice, center, defaults, calendar, clock, health, nullptr, nullptr, nullptr, nullptr};
    };
    const auto exitCode = CommandLine::run(static_cast<int>(pointers.size()), pointers.data(),
        {.in = input, .out = output, .error = errors, .makeServices = makeServices, .now = [] {
             return today;
         }});
    out = output.str();
    error = errors.str();
    return exitCode;
}

void Desk::store(const TinkraConfiguration& configuration) const
{
    defaults->setData(Session::configurationKey, encode(configuration));
}

TinkraConfiguration Desk::stored() const
{
    return decode<TinkraConfiguration>(defaults->data(Session::configurationKey).value());
}

}
