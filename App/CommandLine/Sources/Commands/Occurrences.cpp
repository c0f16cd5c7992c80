#include "Commands/Occurrences.h"

#include "Json.h"
#include "PrintableText.h"
#include "Table.h"
#include "TimeText.h"

#include "TinkraICalendar/Calendar.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <istream>
#include <optional>
#include <ostream>
#include <tuple>

namespace Tinkra::CommandLine {

namespace {

using ICalendar::UtcSeconds;

struct Row {
    UtcSeconds start;
    UtcSeconds end;
    std::string title;
    std::string id;
    bool isAllDay = false;
};

/// At most one byte more than a calendar may have, so that its reader sees that there is too much.
std::string readAll(std::istream& in)
{
    const std::size_t limit = ICalendar::Limits().bytes + 1;
    constexpr std::size_t blockSize = 1U << 16U;
    std::string text;
    while (in && text.size() < limit) {
        const auto before = text.size();
        const auto wanted = std::min(blockSize, limit - before);
        text.resize(before + wanted);
        in.read(text.data() + before, static_cast<std::streamsize>(wanted));
        text.resize(before + static_cast<std::size_t>(in.gcount()));
    }
    return text;
}

/// Nothing, and `errno`, when the file cannot be read.
std::optional<std::string> readFile(const std::string& name, std::istream& standardIn)
{
    std::ifstream file;
    const bool isStandardIn = name == "-";
    errno = 0;
    if (!isStandardIn) {
        file.open(name, std::ios::binary);
        if (!file)
            return std::nullopt;
    }
    // A folder opens like a file and fails only when it is read.
    errno = 0;
    auto text = readAll(isStandardIn ? standardIn : file);
    return errno == 0 ? std::optional(std::move(text)) : std::nullopt;
}

void collect(const ICalendar::Calendar& calendar, const OccurrencesQuery& query, std::vector<Row>& rows,
    std::vector<std::string>& notices)
{
    const auto givenUp =
        calendar.forEachOccurrence(query.range, query.viewer, [&](const ICalendar::Occurrence& occurrence) {
            if (occurrence.start < query.range.from || occurrence.start >= query.range.to)
                return; // it only reaches into the range
            rows.push_back({
                .start = occurrence.start,
                .end = occurrence.end,
                .title = std::string(occurrence.title.value_or("Untitled meeting")),
                .id = std::string(occurrence.uid) + "@"
                    + std::to_string(occurrence.start.time_since_epoch().count()),
                .isAllDay = occurrence.isAllDay,
            });
        });
    notices.insert(notices.end(), givenUp.begin(), givenUp.end());
}

void printJson(std::ostream& out, const std::vector<Row>& rows)
{
    out << '[';
    const char* separator = "\n";
    for (const auto& row : rows) {
        out << separator << R"({"start":")" << utcText(row.start) << R"(","end":")" << utcText(row.end)
            << R"(","allDay":)" << (row.isAllDay ? "true" : "false") << R"(,"title":)" << jsonText(row.title)
            << R"(,"id":)" << jsonText(row.id) << '}';
        separator = ",\n";
    }
    out << "\n]\n";
}

System::DateComponents componentsAt(UtcSeconds instant, const ICalendar::Zone& zone)
{
    const auto local = zone.toLocal(instant);
    const auto day = std::chrono::floor<std::chrono::days>(local);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(local - day);
    return {
        .year = static_cast<int>(date.year()),
        .month = static_cast<int>(static_cast<unsigned>(date.month())),
        .day = static_cast<int>(static_cast<unsigned>(date.day())),
        .hour = static_cast<int>(time.hours().count()),
        .minute = static_cast<int>(time.minutes().count()),
        .second = static_cast<int>(time.seconds().count()),
    };
}

void printTable(std::ostream& out, const std::vector<Row>& rows, const ICalendar::Zone& zone)
{
    Table table({"START", "END", "ALL DAY", "TITLE", "IDENTIFIER"});
    for (const auto& row : rows)
        table.add({localText(componentsAt(row.start, zone)), localText(componentsAt(row.end, zone)),
            row.isAllDay ? "yes" : "no", row.title, row.id});
    if (table.isEmpty())
        out << "There are no occurrences in that time.\n";
    else
        table.print(out);
}

}

ExitCode listOccurrences(
    const OccurrencesQuery& query, std::istream& in, std::ostream& out, std::ostream& error)
{
    auto exitCode = ExitCode::Success;
    bool isAnyRead = false;
    std::vector<Row> rows;
    for (const auto& name : query.files) {
        const auto text = readFile(name, in);
        if (!text) {
            const int reason = errno;
            error << "tinkra: " << printable(name) << " cannot be read: " << std::strerror(reason) << '\n';
            exitCode = ExitCode::Failure;
            continue;
        }
        isAnyRead = true;
        const auto calendar = ICalendar::Calendar::read(*text);
        auto notices = calendar.notices();
        if (!calendar.isWhole())
            notices.emplace_back("It is no whole calendar: BEGIN:VCALENDAR or END:VCALENDAR is missing.");
        collect(calendar, query, rows, notices);
        for (const auto& notice : notices)
            error << "tinkra: " << printable(name) << ": " << printable(notice) << '\n';
    }
    std::ranges::sort(rows, {}, [](const Row& row) { return std::tie(row.start, row.title, row.id); });
    if (query.format == Format::Json)
        printJson(out, rows);
    else if (isAnyRead)
        printTable(out, rows, *query.viewer);
    return exitCode;
}

}
