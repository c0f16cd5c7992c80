#include "UsageError.h"

#include <array>
#include <string_view>
#include <utility>

namespace Tinkra::CommandLine {

namespace {

using Pair = std::pair<std::string_view, std::string_view>;

constexpr std::array wantedOperands{
    Pair{"select", "which calendars? \"tinkra calendars\" lists their identifiers"},
    Pair{"deselect", "which calendars? \"tinkra calendars\" lists their identifiers"},
    Pair{"occurrences", "which calendar files? Name some, or - for standard input"},
};

constexpr std::array wantedValues{
    Pair{"--days", "--days takes a number of days, from 1 to 3653"},
    Pair{"--from", "--from takes a time, such as 2026-11-20 or 2026-11-20T09:00:00Z"},
    Pair{"--to", "--to takes a time, such as 2026-11-20 or 2026-11-20T09:00:00Z"},
    Pair{"--json", "--json takes no value"},
};

std::string describeExtra(const std::string& extra, const std::string& command)
{
    const auto quoted = '"' + extra + '"';
    if (extra.size() > 1 && extra.front() == '-')
        return command.empty() ? "there is no option " + quoted
                               : "\"tinkra " + command + "\" has no option " + quoted;
    return command.empty() ? "there is no command " + quoted
                           : "\"tinkra " + command + "\" takes no " + quoted;
}

std::string describeTrouble(const CLI::ParseError& error, const CLI::App& app, const std::string& command)
{
    const std::string words = error.what();
    const auto kind = static_cast<CLI::ExitCodes>(error.get_exit_code());
    if (kind == CLI::ExitCodes::ExtrasError) {
        const auto extras = app.remaining(true);
        return extras.empty() ? words : describeExtra(extras.front(), command);
    }
    if (kind == CLI::ExitCodes::RequiredError) {
        for (const auto& [name, sentence] : wantedOperands) {
            if (name == command)
                return std::string(sentence);
        }
    }
    for (const auto& [name, sentence] : wantedValues) {
        if (words.find(name) != std::string::npos)
            return std::string(sentence);
    }
    return words;
}

}

std::string describe(const CLI::ParseError& error, const CLI::App& app)
{
    const auto commands = app.get_subcommands();
    const auto command = commands.empty() ? std::string() : commands.front()->get_name();
    return describeTrouble(error, app, command) + "; see \"tinkra " + (command.empty() ? "" : command + " ")
        + "--help\"";
}

}
