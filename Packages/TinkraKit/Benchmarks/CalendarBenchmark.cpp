// How fast calendars are read, against the lower bound of the same machine in the same minute.
//
//   calendar_benchmark FOLDER [--check] [--rounds N] [--peer PROGRAM]
//
// FOLDER holds what make_test_calendars.py writes: single/<calendar>.ics,
// vdir/<calendar>/<event>.ics, expected.tsv and manifest.json. PROGRAM is another reader, called as PROGRAM
// BASE_EPOCH DAYS FOLDER. With
// --check the occurrences of both layouts are compared with expected.tsv, and nothing is measured.

#include "CalendarFiles.h"
#include "Measurement.h"
#include "TinkraICalendar/Calendar.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace Tinkra;
using namespace Tinkra::ICalendar;

struct Options {
    std::filesystem::path folder;
    std::string peer;
    int rounds = 9;
    bool check = false;
};

Options parseOptions(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument{argv[i]};
        const bool hasValue = i + 1 < argc;
        if (argument == "--check")
            options.check = true;
        else if (argument == "--peer" && hasValue)
            options.peer = argv[++i];
        else if (argument == "--rounds" && hasValue)
            options.rounds = std::max(1, std::stoi(argv[++i]));
        else
            options.folder = argument;
    }
    if (options.folder.empty())
        throw std::invalid_argument{
            "usage: calendar_benchmark FOLDER [--check] [--rounds N] [--peer PROGRAM]"};
    return options;
}

TimeRange windowOf(const std::filesystem::path& folder)
{
    std::ifstream file{folder / "manifest.json"};
    const auto parameters = nlohmann::json::parse(file).at("parameters");
    const auto base = parameters.at("base").get<std::string>(); // 2026-11-20T00:00:00Z
    using namespace std::chrono;
    const sys_days day{
        year{std::stoi(base.substr(0, 4))} / std::stoi(base.substr(5, 2)) / std::stoi(base.substr(8, 2))};
    const UtcSeconds from = day + hours{std::stoi(base.substr(11, 2))};
    return {from, from + days{parameters.at("days").get<int>()}};
}

/// The sum over all occurrences keeps the compiler from leaving any of them out.
struct Tally {
    std::size_t occurrences = 0;
    std::int64_t starts = 0;
};

Tally readCold(const std::filesystem::path& folder, TimeRange window)
{
    Tally tally;
    const auto viewer = utcZone();
    forEachCalendarFile(folder, [&](std::string_view, std::string_view bytes) {
        const auto calendar = Calendar::read(bytes);
        calendar.forEachOccurrence(window, viewer, [&](const Occurrence& occurrence) {
            ++tally.occurrences;
            tally.starts += occurrence.start.time_since_epoch().count();
        });
    });
    return tally;
}

std::string asLine(const Occurrence& occurrence)
{
    return std::to_string(occurrence.start.time_since_epoch().count()) + '\t'
        + std::to_string(occurrence.end.time_since_epoch().count()) + '\t' + (occurrence.isAllDay ? '1' : '0')
        + '\t' + std::string{occurrence.uid} + '\t' + std::string{occurrence.title.value_or("")};
}

std::vector<std::string> linesOf(const std::filesystem::path& folder, TimeRange window)
{
    std::vector<std::string> lines;
    forEachCalendarFile(folder, [&](std::string_view name, std::string_view bytes) {
        const auto calendar = Calendar::read(bytes);
        if (!calendar.isWhole() || !calendar.notices().empty())
            throw std::runtime_error{std::string{name} + " was not understood"};
        calendar.forEachOccurrence(window, utcZone(), [&](const Occurrence& occurrence) {
            if (occurrence.start >= window.from)
                lines.push_back(asLine(occurrence));
        });
    });
    std::sort(lines.begin(), lines.end());
    return lines;
}

std::vector<std::string> expectedLines(const std::filesystem::path& folder)
{
    std::ifstream file{folder / "expected.tsv"};
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) { // start end allday uid calendar summary
        std::size_t calendarAt = 0;
        for (int i = 0; i < 4; ++i)
            calendarAt = line.find('\t', calendarAt) + 1;
        lines.push_back(line.substr(0, calendarAt) + line.substr(line.find('\t', calendarAt) + 1));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

bool check(const std::filesystem::path& folder, TimeRange window)
{
    const auto expected = expectedLines(folder);
    bool isRight = !expected.empty();
    for (const auto* layout : {"single", "vdir"}) {
        const auto found = linesOf(folder / layout, window);
        std::vector<std::string> missing;
        std::vector<std::string> surplus;
        std::set_difference(
            expected.begin(), expected.end(), found.begin(), found.end(), std::back_inserter(missing));
        std::set_difference(
            found.begin(), found.end(), expected.begin(), expected.end(), std::back_inserter(surplus));
        std::printf("%-8s %zu expected, %zu found, %zu missing, %zu too many\n", layout, expected.size(),
            found.size(), missing.size(), surplus.size());
        for (std::size_t i = 0; i < std::min<std::size_t>(missing.size(), 5); ++i)
            std::printf("  missing: %s\n", missing[i].c_str());
        for (std::size_t i = 0; i < std::min<std::size_t>(surplus.size(), 5); ++i)
            std::printf("  too many: %s\n", surplus[i].c_str());
        isRight &= missing.empty() && surplus.empty();
    }
    return isRight;
}

/// The length of the titles in a text; of a folded one, that of its first line.
std::size_t titleBytes(std::string_view text)
{
    constexpr std::string_view begin{"\nSUMMARY:"};
    std::size_t bytes = 0;
    for (auto at = text.find(begin); at != std::string_view::npos; at = text.find(begin, at + 1))
        bytes += text.find_first_of("\r\n", at + begin.size()) - at - begin.size();
    return bytes;
}

/// What the heap holds when every calendar of the layout is kept after a query.
void printMemory(const std::filesystem::path& folder, TimeRange window)
{
    const auto inUse = [] {
        const auto heap = mallinfo2();
        return heap.uordblks + heap.hblkhd;
    };
    std::vector<Calendar> calendars;
    std::size_t events = 0;
    std::size_t titles = 0;
    const auto before = inUse();
    forEachCalendarFile(folder, [&](std::string_view, std::string_view bytes) {
        calendars.push_back(Calendar::read(bytes));
        calendars.back().forEachOccurrence(window, utcZone(), [](const Occurrence&) {});
        events += calendars.back().eventCount();
        titles += titleBytes(bytes);
    });
    calendars.shrink_to_fit();
    const auto perEvent = static_cast<double>(inUse() - before - titles) / static_cast<double>(events);
    std::printf("  memory    %zu calendars, %zu events, %.1f bytes per event beyond the titles\n",
        calendars.size(), events, perEvent);
}

void measure(const Options& options, TimeRange window)
{
    const auto base = std::to_string(window.from.time_since_epoch().count());
    const auto days = std::to_string((window.to - window.from) / std::chrono::hours{24});
    for (const auto* layout : {"single", "vdir"}) {
        const auto folder = options.folder / layout;
        std::size_t bytes = 0;
        std::size_t files = 0;
        std::size_t lines = 0;
        Tally tally;
        std::vector<Work> works{
            {.name = "line scan",
                .run =
                    [&] {
                        bytes = files = lines = 0;
                        forEachCalendarFile(folder, [&](std::string_view, std::string_view text) {
                            ++files;
                            bytes += text.size();
                            lines += countLines(text);
                        });
                    }},
            {.name = "cold read", .run = [&] { tally = readCold(folder, window); }},
        };
        if (!options.peer.empty())
            works.push_back({.name = "peer", .run = [&] { runProgram({options.peer, base, days, folder}); }});
        const auto seconds = medianSeconds(works, options.rounds);
        std::printf("%s: %zu files, %zu bytes, %zu lines, %zu occurrences\n", layout, files, bytes, lines,
            tally.occurrences);
        for (std::size_t i = 0; i < works.size(); ++i) {
            std::printf("  %-9s %9.2f ms  %7.2f times the line scan  %6.2f GB/s\n", works[i].name.c_str(),
                seconds[i] * 1e3, seconds[i] / seconds[0], static_cast<double>(bytes) / seconds[i] / 1e9);
        }
        if (!options.peer.empty())
            std::printf("  the peer takes %.1f times as long as the cold read\n", seconds[2] / seconds[1]);
        printMemory(folder, window);
    }
}

}

int main(int argc, char** argv)
{
    try {
        const auto options = parseOptions(argc, argv);
        const auto window = windowOf(options.folder);
        if (options.check)
            return check(options.folder, window) ? 0 : 1;
        measure(options, window);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
