#include "TinkraICalendar/EventReader.h"

#include "TinkraICalendar/ComponentStack.h"
#include "TinkraICalendar/LineReader.h"
#include "TinkraICalendar/Property.h"
#include "TinkraICalendar/PropertyName.h"
#include "TinkraICalendar/TimeValue.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

namespace Tinkra::ICalendar {

namespace {

// RDATE and EXDATE together; a date is longer in memory than in the text.
constexpr std::size_t mostDates = 500'000;

// Of one event, which has one as a rule.
constexpr std::uint32_t mostRules = 1'000;

class EventReader {
public:
    EventReader(std::string_view text, std::size_t longestLine, Notices& notices)
        : m_text{text}
        , m_lines{text, longestLine, notices}
        , m_notices{notices}
    {
    }

    Drafts read();

private:
    enum class Ending { There, Missing };

    void begin(std::string_view component);
    void end(std::string_view component);
    void closeAll(Ending ending);
    void closeZone(std::size_t offset);
    void closeEvent(Ending ending);

    void readProperty(NamedProperty property, std::string_view line);
    std::optional<ZonedTime> zonedTime(std::string_view value, std::string_view parameters);
    std::optional<ZonedTime> readTime(std::string_view line, std::size_t nameLength);
    void readOnce(std::optional<ZonedTime>& time, std::string_view line, std::size_t nameLength);
    void readRecurrenceId(std::string_view line, std::size_t nameLength);
    void readDuration(std::string_view value);
    template <typename ReadOne>
    void readDates(std::string_view line, std::size_t nameLength, ReadOne readOne);
    void readExtra(std::string_view value, std::string_view parameters);
    void readException(std::string_view value, std::string_view parameters);
    Slice addText(std::string_view value);
    void readRule(Slice& ofEvent, std::vector<Slice>& rules, std::string_view value);
    void readSequence(std::string_view value);
    void note(std::string_view what, std::string_view value);

    std::string_view m_text;
    LineReader m_lines;
    Notices& m_notices;
    Drafts m_drafts;
    EventDraft m_event; ///< the one that is open
    bool m_isInEvent = false;
    std::optional<ZonedTime> m_start; ///< its DTSTART
    std::size_t m_textsBefore = 0; ///< length of the texts when the event began
    ComponentStack m_passedOver; ///< components that are open inside the event or the calendar
    std::optional<std::size_t> m_zoneBegin; ///< offset of the VTIMEZONE that is open
    std::uint32_t m_calendar = 0;
    bool m_isCalendarOpen = false;
    bool m_hasEndedCalendar = false;
    bool m_isFull = false;
    std::string m_buffer;
    std::string m_parameterBuffer;
};

Drafts EventReader::read()
{
    while (m_lines.next()) {
        auto line = m_lines.line();
        if (line.front() == ' ' || line.front() == '\t')
            continue; // continues a line that is not read
        const bool mayBeFoldedInName = line.size() <= longestPropertyName && m_lines.isFolded();
        if (mayBeFoldedInName)
            line = m_lines.unfolded(m_buffer);
        const auto property = propertyName(line);
        if (property.name == PropertyName::Other)
            continue;
        if (property.name == PropertyName::Begin || property.name == PropertyName::End) {
            const auto component =
                trimmed(divide(mayBeFoldedInName ? line : m_lines.unfolded(m_buffer), property.length).value);
            property.name == PropertyName::Begin ? begin(component) : end(component);
        } else if (m_passedOver.isEmpty()) {
            readProperty(property, mayBeFoldedInName ? line : m_lines.unfolded(m_buffer));
        }
    }
    closeZone(m_text.size());
    closeEvent(Ending::Missing);
    if (m_isFull)
        m_notices.add("There are too many dates in this text; some are left out.");
    m_drafts.isWhole = m_hasEndedCalendar && !m_isCalendarOpen;
    m_drafts.zones.resolve(m_notices);
    return std::move(m_drafts);
}

void EventReader::begin(std::string_view component)
{
    if (equalsIgnoringCase(component, "VCALENDAR")) {
        closeAll(Ending::Missing);
        m_isCalendarOpen = true;
        ++m_calendar;
    } else if (equalsIgnoringCase(component, "VEVENT")) {
        closeAll(Ending::Missing);
        m_textsBefore = m_drafts.texts.size();
        m_event = {};
        m_isInEvent = true;
        m_start.reset();
        m_event.line = m_lines.number();
        m_event.calendar = m_calendar;
        m_event.rules.first = static_cast<std::uint32_t>(m_drafts.rules.size());
        m_event.exclusionRules.first = static_cast<std::uint32_t>(m_drafts.exclusionRules.size());
        m_event.extras.first = static_cast<std::uint32_t>(m_drafts.extras.size());
        m_event.exceptions.first = static_cast<std::uint32_t>(m_drafts.exceptions.size());
    } else if (equalsIgnoringCase(component, "VTIMEZONE")) {
        closeAll(Ending::Missing);
        m_zoneBegin = m_lines.offset();
        m_passedOver.push(component);
    } else {
        m_passedOver.push(component);
    }
}

void EventReader::end(std::string_view component)
{
    if (equalsIgnoringCase(component, "VCALENDAR")) {
        closeAll(Ending::Missing);
        m_hasEndedCalendar |= m_isCalendarOpen;
        m_isCalendarOpen = false;
    } else if (equalsIgnoringCase(component, "VEVENT") && m_isInEvent) {
        closeAll(Ending::There);
    } else {
        m_passedOver.pop(component);
        if (m_passedOver.isEmpty())
            closeZone(m_lines.offset());
    }
}

/// Ends what is open below the calendar.
void EventReader::closeAll(Ending ending)
{
    closeZone(m_lines.offset());
    m_passedOver.clear();
    closeEvent(ending);
}

void EventReader::closeZone(std::size_t offset)
{
    if (m_zoneBegin)
        m_drafts.zones.define(m_calendar, m_text.substr(*m_zoneBegin, offset - *m_zoneBegin));
    m_zoneBegin.reset();
}

void EventReader::closeEvent(Ending ending)
{
    if (!std::exchange(m_isInEvent, false))
        return;
    if (ending == Ending::Missing)
        m_notices.add(m_event.line, "the event has no end; what there is of it was taken.");
    if (!m_start)
        m_start = m_event.recurrenceId; // an exception that leaves its time as it was
    if (m_start) {
        m_event.start = *m_start;
        m_drafts.events.push_back(m_event);
        return;
    }
    m_notices.add(m_event.line, "the event has no start that can be read; it was left out.");
    m_drafts.texts.resize(m_textsBefore);
    m_drafts.rules.resize(m_event.rules.first);
    m_drafts.exclusionRules.resize(m_event.exclusionRules.first);
    m_drafts.extras.resize(m_event.extras.first);
    m_drafts.exceptions.resize(m_event.exceptions.first);
}

void EventReader::readProperty(NamedProperty property, std::string_view line)
{
    const auto value = [&] { return divide(line, property.length).value; };
    if (!m_isInEvent) {
        if (property.name == PropertyName::DefaultZone) {
            m_drafts.zones.setDefault(
                m_calendar, m_drafts.zones.indexOf(trimmed(value()), m_calendar, m_lines.number()));
        }
        return;
    }
    switch (property.name) {
    case PropertyName::DateTimeStart:
        readOnce(m_start, line, property.length);
        break;
    case PropertyName::DateTimeEnd:
        readOnce(m_event.end, line, property.length);
        break;
    case PropertyName::RecurrenceId:
        readRecurrenceId(line, property.length);
        break;
    case PropertyName::Duration:
        readDuration(value());
        break;
    case PropertyName::RecurrenceRule:
        readRule(m_event.rules, m_drafts.rules, value());
        break;
    case PropertyName::ExceptionRule:
        readRule(m_event.exclusionRules, m_drafts.exclusionRules, value());
        break;
    case PropertyName::RecurrenceDates:
        readDates(line, property.length, [this](auto one, auto parameters) { readExtra(one, parameters); });
        break;
    case PropertyName::ExceptionDates:
        readDates(
            line, property.length, [this](auto one, auto parameters) { readException(one, parameters); });
        break;
    case PropertyName::Summary:
        if (!m_event.hasTitle)
            m_event.title = addText(value());
        m_event.hasTitle = true;
        break;
    case PropertyName::Uid:
        if (m_event.uid.count == 0)
            m_event.uid = addText(trimmed(value()));
        break;
    case PropertyName::Sequence:
        readSequence(trimmed(value()));
        break;
    // Only looked at when two events are at odds; a folded one is not kept.
    case PropertyName::DateTimeStamp:
        m_event.stamp = m_lines.line();
        break;
    case PropertyName::LastModified:
        m_event.lastModified = m_lines.line();
        break;
    case PropertyName::Begin:
    case PropertyName::End:
    case PropertyName::DefaultZone:
    case PropertyName::Other:
        break;
    }
}

/// The time that `value` writes; its zone comes from the parameters.
std::optional<ZonedTime> EventReader::zonedTime(std::string_view value, std::string_view parameters)
{
    const auto written = parseTime(value);
    if (!written)
        return {};
    ZonedTime time{.time = written->time, .form = written->form};
    if (parameters.empty() || time.form == TimeForm::Date)
        return time;
    if (equalsIgnoringCase(parameter(parameters, "VALUE", m_parameterBuffer), "DATE"))
        return ZonedTime{.time = std::chrono::floor<std::chrono::days>(written->time)};
    if (time.form == TimeForm::Local) {
        const auto tzid = parameter(parameters, "TZID", m_parameterBuffer);
        if (!tzid.empty())
            time.zone = m_drafts.zones.indexOf(tzid, m_calendar, m_lines.number());
    }
    return time;
}

std::optional<ZonedTime> EventReader::readTime(std::string_view line, std::size_t nameLength)
{
    const auto property = divide(line, nameLength);
    if (auto time = zonedTime(property.value, property.parameters))
        return time;
    const auto other = divideAtLastColon(line, nameLength);
    if (auto time = zonedTime(other.value, other.parameters))
        return time;
    note("is no date or time", property.value);
    return {};
}

void EventReader::readOnce(std::optional<ZonedTime>& time, std::string_view line, std::size_t nameLength)
{
    if (!time)
        time = readTime(line, nameLength);
}

void EventReader::readRecurrenceId(std::string_view line, std::size_t nameLength)
{
    readOnce(m_event.recurrenceId, line, nameLength);
    const auto range = parameter(divide(line, nameLength).parameters, "RANGE", m_parameterBuffer);
    m_event.appliesToFuture = equalsIgnoringCase(range, "THISANDFUTURE");
}

void EventReader::readDuration(std::string_view value)
{
    if (m_event.duration)
        return;
    m_event.duration = parseDuration(value);
    if (!m_event.duration)
        note("is no duration", value);
}

/// Calls `readOne` for each value of a comma-separated list.
template <typename ReadOne>
void EventReader::readDates(std::string_view line, std::size_t nameLength, ReadOne readOne)
{
    auto property = divide(line, nameLength);
    if (property.value.find(':') != std::string_view::npos) // an unquoted colon in a parameter
        property = divideAtLastColon(line, nameLength);
    auto rest = property.value;
    while (!rest.empty()) {
        const auto comma = std::min(rest.find(','), rest.size());
        const auto one = trimmed(rest.substr(0, comma));
        rest.remove_prefix(std::min(comma + 1, rest.size()));
        if (m_drafts.extras.size() + m_drafts.exceptions.size() >= mostDates) {
            m_isFull = true;
            return;
        }
        if (!one.empty())
            readOne(one, property.parameters);
    }
}

void EventReader::readExtra(std::string_view value, std::string_view parameters)
{
    const auto slash = std::min(value.find('/'), value.size());
    const auto start = zonedTime(value.substr(0, slash), parameters);
    if (!start) {
        note("is no date or time", value);
        return;
    }
    ExtraDraft extra{.start = *start, .end = {}, .duration = {}};
    if (slash < value.size()) {
        const auto end = value.substr(slash + 1);
        extra.duration = parseDuration(end);
        if (!extra.duration)
            extra.end = zonedTime(end, parameters);
    }
    m_drafts.extras.push_back(extra);
    ++m_event.extras.count;
}

void EventReader::readException(std::string_view value, std::string_view parameters)
{
    if (const auto time = zonedTime(value.substr(0, value.find('/')), parameters)) {
        m_drafts.exceptions.push_back(*time);
        ++m_event.exceptions.count;
    } else {
        note("is no date or time", value);
    }
}

Slice EventReader::addText(std::string_view value)
{
    const auto first = m_drafts.texts.size();
    appendText(m_drafts.texts, value);
    return {static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(m_drafts.texts.size() - first)};
}

void EventReader::readRule(Slice& ofEvent, std::vector<Slice>& rules, std::string_view value)
{
    value = trimmed(value);
    if (value.empty() || ofEvent.count >= mostRules)
        return;
    rules.push_back(
        {static_cast<std::uint32_t>(m_drafts.texts.size()), static_cast<std::uint32_t>(value.size())});
    m_drafts.texts += value;
    ++ofEvent.count;
}

void EventReader::readSequence(std::string_view value)
{
    const auto result = std::from_chars(value.data(), value.data() + value.size(), m_event.sequence);
    if (result.ec == std::errc::result_out_of_range)
        m_event.sequence = std::numeric_limits<std::int32_t>::max();
}

void EventReader::note(std::string_view what, std::string_view value)
{
    m_notices.add(m_lines.number(), quoted(value) + " " + std::string{what} + ".");
}

}

Drafts readEvents(std::string_view text, std::size_t longestLine, Notices& notices)
{
    return EventReader{text, longestLine, notices}.read();
}

}
