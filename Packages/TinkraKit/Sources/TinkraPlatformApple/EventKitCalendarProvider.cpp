#include "TinkraPlatformApple/EventKitCalendarProvider.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <tuple>
#include <utility>

namespace Tinkra {

namespace {

// The border of what a signed number of 64 bits can hold; the lower one is included, the upper one is not.
constexpr double kInteger64Border = 9223372036854775808.0;

// Ends the program in every build: such a value would turn into a wrong identifier or colour.
std::int64_t wholeNumber(double value, const char* whose)
{
    const bool fits = value >= -kInteger64Border && value < kInteger64Border;
    if (!fits) { // a NaN neither
        std::fprintf(stderr, "EventKitCalendarProvider: %s %f is no whole number of 64 bits\n", whose, value);
        std::abort();
    }
    return static_cast<std::int64_t>(value);
}

Text meetingID(const System::StoredEvent& event, Instant start)
{
    const auto seconds = wholeNumber(secondsSince1970(start), "event start");
    const auto& details = *event.details;
    return details.eventIdentifier.value_or(details.calendarItemIdentifier) + "@" + std::to_string(seconds);
}

Meeting meetingFor(const System::StoredEvent& event, Instant start)
{
    return {
        .id = meetingID(event, start),
        .calendarID = event.details->calendarIdentifier,
        .title = event.details->title.value_or("Untitled meeting"),
        .start = start,
        .end = event.end.value_or(start),
        .isAllDay = event.isAllDay,
    };
}

std::vector<std::string> identifiersOfKept(
    const std::vector<System::StoredCalendar>& calendars, const CalendarIDs& in)
{
    std::vector<std::string> kept;
    for (const auto& calendar : calendars) {
        if (in.contains(calendar.identifier))
            kept.push_back(calendar.identifier);
    }
    return kept;
}

bool byAccountAndTitle(const CalendarRef& left, const CalendarRef& right)
{
    return std::tie(left.accountName, left.title) < std::tie(right.accountName, right.title);
}

}

EventKitCalendarProvider::EventKitCalendarProvider(std::shared_ptr<System::EventStore> store)
    : m_store(std::move(store))
{
}

Task<bool> EventKitCalendarProvider::requestAccess()
{
    try {
        co_return co_await m_store->requestFullAccess();
    } catch (...) {
        co_return false;
    }
}

Task<std::vector<CalendarRef>> EventKitCalendarProvider::availableCalendars()
{
    auto stored = co_await m_store->calendars();

    std::vector<CalendarRef> calendars;
    calendars.reserve(stored.size());
    for (auto& calendar : stored) {
        calendars.push_back({
            .id = std::move(calendar.identifier),
            .title = std::move(calendar.title),
            .accountName = std::move(calendar.sourceTitle),
            .colorHex = hexString(calendar.colorComponents),
        });
    }
    std::stable_sort(calendars.begin(), calendars.end(), byAccountAndTitle);
    co_return calendars;
}

Task<std::vector<Meeting>> EventKitCalendarProvider::meetings(CalendarIDs in, Instant from, Instant to)
{
    if (in.empty())
        co_return std::vector<Meeting>{};

    const auto calendars = co_await m_store->calendars();
    auto kept = identifiersOfKept(calendars, in);
    if (kept.empty())
        co_return std::vector<Meeting>{};

    const auto events = co_await m_store->events(from, to, std::move(kept));
    std::vector<Meeting> meetings;
    meetings.reserve(events.size());
    for (const auto& event : events) {
        if (const auto start = event.start)
            meetings.push_back(meetingFor(event, *start));
    }
    co_return meetings;
}

std::optional<Text> EventKitCalendarProvider::hexString(
    const std::optional<std::vector<double>>& colorComponents)
{
    if (!colorComponents || colorComponents->size() < 3)
        return std::nullopt;

    // Not clamped: a component outside 0...1 gives a longer text, which then names no colour. The format
    // takes the low 32 bits of each number.
    std::array<unsigned, 3> scaled{};
    for (std::size_t i = 0; i < scaled.size(); ++i)
        scaled[i] =
            static_cast<unsigned>(wholeNumber(std::round((*colorComponents)[i] * 255), "colour component"));

    std::array<char, 1 + 3 * 8 + 1> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", scaled[0], scaled[1], scaled[2]);
    return Text{text.data()};
}

}
