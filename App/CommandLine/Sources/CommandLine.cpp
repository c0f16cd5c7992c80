#include "CommandLine.h"

#include "Commands/Commands.h"
#include "Commands/Occurrences.h"
#include "PrintableText.h"
#include "TimeText.h"
#include "UsageError.h"
#include "Version.h"

#include <CLI/CLI.hpp>
#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>

#include <cmath>
#include <exception>
#include <ostream>
#include <stdexcept>

namespace Tinkra::CommandLine {

namespace {

constexpr int defaultDays = 14;
constexpr int mostDays = 3653;
constexpr auto defaultRange = std::chrono::days(30);

/// What the user asked for.
struct Request {
    bool wantsJson = false;
    std::vector<std::string> ids;
    int days = defaultDays;
    std::vector<std::string> files;
    std::string from;
    std::string to;

    Format format() const { return wantsJson ? Format::Json : Format::Table; }
};

struct Commands {
    CLI::App* calendars;
    CLI::App* select;
    CLI::App* deselect;
    CLI::App* upcoming;
    CLI::App* sync;
    CLI::App* pending;
    CLI::App* occurrences;
    CLI::App* testAlarm;
    CLI::App* doctor;
};

Commands declare(CLI::App& app, Request& request)
{
    app.set_version_flag("--version", "tinkra " + std::string(version));
    app.require_subcommand(0, 1);
    app.footer("\"tinkra help COMMAND\" explains a command; the manual page tinkra(1) says more.");
    app.add_flag("--json", request.wantsJson)->group(""); // also before the command

    const Commands commands{
        .calendars = app.add_subcommand("calendars", "List accounts, calendars and their identifiers"),
        .select = app.add_subcommand("select", "Monitor calendars, and synchronise"),
        .deselect = app.add_subcommand("deselect", "Stop monitoring calendars, and synchronise"),
        .upcoming = app.add_subcommand("upcoming", "List the next alarms"),
        .sync = app.add_subcommand("sync", "Arm the alarms of the next 30 days; print what changed"),
        .pending = app.add_subcommand("pending", "List the alarms that the notification service holds"),
        .occurrences = app.add_subcommand("occurrences", "Show what calendar files (.ics) contain"),
        .testAlarm = app.add_subcommand("test-alarm", "Ring now, to see and hear what an alarm is like"),
        .doctor = app.add_subcommand("doctor", "Check everything that alarms depend on"),
    };
    for (auto* command : {commands.calendars, commands.upcoming, commands.sync, commands.pending,
             commands.occurrences, commands.doctor})
        command->add_flag("--json", request.wantsJson, "Print JSON");
    for (auto* command : {commands.select, commands.deselect})
        command->add_option("ID", request.ids, "Identifiers, as \"tinkra calendars\" lists them")->required();
    commands.upcoming->add_option("--days", request.days, "How many days to look ahead")
        ->check(CLI::Range(1, mostDays))
        ->take_last()
        ->capture_default_str();
    commands.occurrences->add_option("FILE", request.files, "Calendar files; - is standard input")
        ->required();
    const auto addTime = [&](const std::string& name, std::string& text, const std::string& explanation) {
        commands.occurrences->add_option(name, text, explanation)
            ->check([](const std::string& value) { return std::string(value.empty() ? "is empty" : ""); })
            ->take_last();
    };
    addTime("--from", request.from,
        "First start to show: 2026-11-20, 2026-11-20T09:00, ...T09:00Z, ...T09:00+01:00 or @SECONDS "
        "(default: now)");
    addTime("--to", request.to, "Show starts before this (default: 30 days after --from)");
    return commands;
}

ICalendar::UtcSeconds ceiling(Instant instant)
{
    return std::chrono::ceil<std::chrono::seconds>(instant);
}

ExitCode runOccurrences(const Request& request, const Surroundings& surroundings)
{
    const auto viewer = ICalendar::viewerZone();
    const auto instantFor = [&](const std::string& text, Instant otherwise) {
        return text.empty() ? std::optional(otherwise) : parseInstant(text, *viewer);
    };
    const auto from = instantFor(request.from, surroundings.now());
    const auto to = from ? instantFor(request.to, *from + defaultRange) : std::nullopt;
    if (!from || !to) {
        surroundings.error << "tinkra: \"" << printable(from ? request.to : request.from)
                           << "\" is no time; write one as 2026-11-20 or 2026-11-20T09:00:00Z\n";
        return ExitCode::Usage;
    }
    // Occurrences start at whole seconds.
    const OccurrencesQuery query{
        .files = request.files,
        .range = {ceiling(*from), ceiling(*to)},
        .viewer = viewer,
        .format = request.format(),
    };
    return listOccurrences(query, surroundings.in, surroundings.out, surroundings.error);
}

Task<ExitCode> runWithServices(Commands commands, Request request, SessionPtr session)
{
    if (commands.calendars->parsed())
        return listCalendars(std::move(session), request.format());
    if (commands.select->parsed())
        return changeSelection(std::move(session), Selection::Add, std::move(request.ids));
    if (commands.deselect->parsed())
        return changeSelection(std::move(session), Selection::Remove, std::move(request.ids));
    if (commands.upcoming->parsed())
        return listUpcoming(std::move(session), request.days, request.format());
    if (commands.sync->parsed())
        return synchronize(std::move(session), request.format());
    if (commands.pending->parsed())
        return listPending(std::move(session), request.format());
    if (commands.testAlarm->parsed())
        return ringTestAlarm(std::move(session));
    return diagnose(std::move(session), request.format());
}

ExitCode carryOut(const Commands& commands, const Request& request, const Surroundings& surroundings)
{
    if (commands.occurrences->parsed())
        return runOccurrences(request, surroundings);

    asio::io_context loop(1);
    const auto session = std::make_shared<Session>(
        surroundings.makeServices(), loop.get_executor(), surroundings.out, surroundings.error);
    std::optional<ExitCode> exitCode;
    std::exception_ptr trouble;
    asio::co_spawn(Executor(loop.get_executor()), runWithServices(commands, request, session),
        [&](const std::exception_ptr& error, ExitCode code) {
            trouble = error;
            exitCode = code;
        });
    // What still waits for time, such as limits of calls that were answered, is of no use to anybody then.
    while (!exitCode && loop.run_one() > 0) { }
    if (trouble)
        std::rethrow_exception(trouble);
    if (!exitCode)
        throw std::logic_error("the command waits for something that never comes");
    return *exitCode;
}

}

ExitCode run(int argumentCount, const char* const* arguments, const Surroundings& surroundings)
{
    CLI::App app("Calendar Murkel: never miss a meeting", "tinkra");
    Request request;
    const auto commands = declare(app, request);
    if (argumentCount <= 1) {
        surroundings.error << app.help();
        return ExitCode::Usage;
    }
    std::vector<const char*> words(arguments, arguments + argumentCount);
    if (words[1] == std::string_view("help")) {
        words.erase(words.begin() + 1);
        words.push_back("--help");
    }
    try {
        app.parse(static_cast<int>(words.size()), words.data());
    } catch (const CLI::Success& success) {
        // --help and --version
        app.exit(success, surroundings.out, surroundings.error);
        return surroundings.out.flush() ? ExitCode::Success : ExitCode::Failure;
    } catch (const CLI::ParseError& error) {
        surroundings.error << "tinkra: " << printable(describe(error, app)) << '\n';
        return ExitCode::Usage;
    }
    if (app.get_subcommands().empty()) {
        surroundings.error << "tinkra: a command is missing; see \"tinkra --help\"\n";
        return ExitCode::Usage;
    }
    if (request.wantsJson && (commands.select->parsed() || commands.deselect->parsed())) {
        surroundings.error << "tinkra: a selection prints no JSON; \"tinkra calendars --json\" lists what is "
                              "monitored\n";
        return ExitCode::Usage;
    }
    try {
        const auto exitCode = carryOut(commands, request, surroundings);
        if (surroundings.out.flush())
            return exitCode;
        surroundings.error << "tinkra: the output could not be written\n";
    } catch (const std::exception& error) {
        surroundings.error << "tinkra: " << printable(error.what()) << '\n';
    }
    return ExitCode::Failure;
}

}
