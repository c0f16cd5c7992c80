#include "CalendarTesting.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>
#include <tuple>

namespace Tinkra::ICalendar {

namespace {

using namespace std::chrono;

struct Found {
    UtcSeconds start;
    UtcSeconds end;
    std::string title;
    bool isAllDay = false;

    friend bool operator<(const Found& a, const Found& b)
    {
        return std::tie(a.start, a.end, a.title) < std::tie(b.start, b.end, b.title);
    }
};

std::vector<Found> found(const Calendar& calendar, View view)
{
    std::vector<Found> all;
    calendar.forEachOccurrence(
        {instant(view.from), instant(view.to)}, findZone(view.zone), [&](const Occurrence& occurrence) {
            all.push_back({occurrence.start, occurrence.end, std::string{occurrence.title.value_or("-")},
                occurrence.isAllDay});
        });
    std::sort(all.begin(), all.end());
    return all;
}

}

UtcSeconds instant(std::string_view text)
{
    int y = 0;
    unsigned mo = 0;
    unsigned d = 0;
    int h = 0;
    int mi = 0;
    int s = 0;
    if (std::sscanf(std::string{text}.c_str(), "%d-%u-%uT%d:%d:%dZ", &y, &mo, &d, &h, &mi, &s) != 6)
        throw std::invalid_argument{"not an instant: " + std::string{text}};
    return sys_days{year{y} / month{mo} / day{d}} + hours{h} + minutes{mi} + seconds{s};
}

std::string text(UtcSeconds time)
{
    const year_month_day date{floor<days>(time)};
    const hh_mm_ss clock{time - floor<days>(time)};
    std::array<char, 40> out{};
    std::snprintf(out.data(), out.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
        static_cast<int>(clock.seconds().count()));
    return out.data();
}

std::string calendarWith(std::string_view body)
{
    std::string all{"BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//tests//EN\r\n"};
    for (const char c : body)
        all += c == '\n' ? std::string{"\r\n"} : std::string{c};
    return all + "END:VCALENDAR\r\n";
}

std::string calendarWithEvent(std::string_view lines)
{
    std::string body{"BEGIN:VEVENT\nUID:one\n"};
    body += lines;
    if (!lines.empty() && lines.back() != '\n')
        body += '\n';
    if (lines.find("SUMMARY") == std::string_view::npos)
        body += "SUMMARY:One\n";
    if (lines.find("DTSTART") == std::string_view::npos)
        body += "DTSTART:20240304T100000Z\nDTEND:20240304T110000Z\n";
    return calendarWith(body + "END:VEVENT\n");
}

std::vector<std::string> occurrences(const Calendar& calendar, View view)
{
    std::vector<std::string> lines;
    for (const auto& one : found(calendar, view)) {
        lines.push_back(
            text(one.start) + "/" + text(one.end) + " " + one.title + (one.isAllDay ? " (all day)" : ""));
    }
    return lines;
}

std::vector<std::string> occurrences(std::string_view text, View view)
{
    return occurrences(Calendar::read(text), view);
}

std::vector<std::string> starts(std::string_view calendar, View view)
{
    std::vector<std::string> lines;
    for (const auto& one : found(Calendar::read(calendar), view))
        lines.push_back(text(one.start));
    return lines;
}

std::vector<std::string> titles(std::string_view calendar, View view)
{
    std::vector<std::string> lines;
    for (const auto& one : found(Calendar::read(calendar), view))
        lines.push_back(one.title);
    return lines;
}

std::vector<std::string> noticesOfQuery(const Calendar& calendar, View view)
{
    return calendar.forEachOccurrence(
        {instant(view.from), instant(view.to)}, findZone(view.zone), [](const Occurrence&) {});
}

}
