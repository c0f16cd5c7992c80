#include "TinkraICalendar/ZoneDefinition.h"

#include "TinkraICalendar/LineReader.h"
#include "TinkraICalendar/Property.h"
#include "TinkraICalendar/TimeValue.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace Tinkra::ICalendar {

namespace {

// Far above what any producer writes; a hostile definition ends here.
constexpr std::size_t mostObservances = 1'000;
constexpr std::size_t mostAdditionalOnsets = 10'000;

/// An observance of which not everything has been read.
struct ObservanceDraft {
    std::optional<LocalSeconds> start;
    std::optional<std::chrono::seconds> offsetFrom;
    std::optional<std::chrono::seconds> offsetTo;
    std::string rule;
    std::vector<LocalSeconds> additionalOnsets;
};

std::optional<Observance> finished(ObservanceDraft draft)
{
    if (!draft.start || !draft.offsetTo)
        return {};
    return Observance{.start = *draft.start,
        .offsetFrom = draft.offsetFrom.value_or(*draft.offsetTo),
        .offsetTo = *draft.offsetTo,
        .rule = std::move(draft.rule),
        .additionalOnsets = std::move(draft.additionalOnsets)};
}

void addOnsets(std::vector<LocalSeconds>& onsets, std::string_view list)
{
    while (!list.empty() && onsets.size() < mostAdditionalOnsets) {
        const auto end = std::min(list.find(','), list.size());
        const auto one = list.substr(0, end);
        if (const auto time = parseTime(one.substr(0, one.find('/'))))
            onsets.push_back(time->time);
        list.remove_prefix(std::min(end + 1, list.size()));
    }
}

void readInto(ObservanceDraft& draft, std::string_view name, std::string_view value)
{
    if (equalsIgnoringCase(name, "DTSTART")) {
        if (const auto time = parseTime(value))
            draft.start = time->time;
    } else if (equalsIgnoringCase(name, "TZOFFSETFROM")) {
        draft.offsetFrom = parseUtcOffset(value);
    } else if (equalsIgnoringCase(name, "TZOFFSETTO")) {
        draft.offsetTo = parseUtcOffset(value);
    } else if (equalsIgnoringCase(name, "RRULE")) {
        draft.rule = trimmed(value);
    } else if (equalsIgnoringCase(name, "RDATE")) {
        addOnsets(draft.additionalOnsets, value);
    }
}

}

ZoneDefinition readZoneDefinition(std::string_view text)
{
    ZoneDefinition definition;
    Notices ignored;
    LineReader lines{text, text.size(), ignored};
    std::optional<ObservanceDraft> observance;
    std::string buffer;
    const auto close = [&] {
        if (auto complete = observance ? finished(*std::exchange(observance, {})) : std::nullopt)
            definition.observances.push_back(std::move(*complete));
    };

    while (lines.next() && definition.observances.size() < mostObservances) {
        const auto line = lines.unfolded(buffer);
        const auto name = trimmed(line.substr(0, line.find_first_of(":;")));
        const auto value = divide(line, std::min(line.find_first_of(":;"), line.size())).value;
        if (equalsIgnoringCase(name, "BEGIN")) {
            close();
            if (!equalsIgnoringCase(trimmed(value), "VTIMEZONE"))
                observance.emplace();
        } else if (equalsIgnoringCase(name, "END")) {
            close();
        } else if (observance) {
            readInto(*observance, name, value);
        } else if (equalsIgnoringCase(name, "TZID")) {
            definition.tzid.clear();
            appendText(definition.tzid, trimmed(value));
        } else if (equalsIgnoringCase(name, "X-LIC-LOCATION")) {
            definition.location = trimmed(value);
        }
    }
    close();
    return definition;
}

}
