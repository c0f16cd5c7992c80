#include "TinkraCore/Models/Coding.h"

#include "TinkraCore/Models/Json.h"

#include <array>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

namespace Tinkra {

namespace {

// --- Reading ---

/// One object of a document, read field by field.
class Fields {
public:
    Fields(const Json::Value& value, std::string path)
        : m_object(std::get_if<Json::Members>(&value))
        , m_path(std::move(path))
    {
        if (!m_object)
            throw DecodingError((m_path.empty() ? "the document" : m_path) + " is not an object");
    }

    /// The member's value, which must be there and be of type `T`.
    template <typename T> const T& required(std::string_view name) const
    {
        const auto* value = optional<T>(name);
        if (!value)
            throw DecodingError(pathOf(name) + " is missing");
        return *value;
    }

    /// The member's value, which must be of type `T`; null when it is missing or is null itself.
    template <typename T> const T* optional(std::string_view name) const
    {
        const auto* value = find(name);
        if (!value || std::holds_alternative<std::nullptr_t>(*value))
            return nullptr;
        if (const auto* typed = std::get_if<T>(value))
            return typed;
        throw DecodingError(pathOf(name) + " is of the wrong type");
    }

    Fields object(std::string_view name) const
    {
        const auto* value = find(name);
        if (!value || std::holds_alternative<std::nullptr_t>(*value))
            throw DecodingError(pathOf(name) + " is missing");
        return {*value, pathOf(name)};
    }

    Text text(std::string_view name) const { return Text{required<std::string>(name)}; }
    Instant instant(std::string_view name) const { return instantAt(required<double>(name)); }

    std::string pathOf(std::string_view name) const
    {
        return m_path.empty() ? std::string(name) : m_path + "." + std::string(name);
    }

private:
    const Json::Value* find(std::string_view name) const
    {
        for (const auto& member : *m_object) {
            if (member.name == name)
                return &member.value;
        }
        return nullptr;
    }

    const Json::Members* m_object;
    std::string m_path;
};

/// Sets a field to what the document holds for it, or leaves it at its default.
template <typename T, typename Field> void readInto(Field& field, const Fields& fields, std::string_view name)
{
    if (const auto* value = fields.optional<T>(name))
        field = Field{*value};
}

AlarmStyle styleOf(const std::string& raw, const std::string& path)
{
    if (const auto style = alarmStyleFromRawValue(raw))
        return *style;
    throw DecodingError(path + " is no alarm style");
}

AlarmSettings settingsFrom(const Fields& fields)
{
    AlarmSettings settings;
    readInto<double>(settings.leadTime, fields, "leadTime");
    if (const auto* style = fields.optional<std::string>("style"))
        settings.style = styleOf(*style, fields.pathOf("style"));
    readInto<bool>(settings.ignoreAllDay, fields, "ignoreAllDay");
    readInto<std::string>(settings.soundName, fields, "soundName");
    readInto<double>(settings.snoozeInterval, fields, "snoozeInterval");
    readInto<bool>(settings.raiseVolume, fields, "raiseVolume");
    readInto<bool>(settings.keepAwake, fields, "keepAwake");
    return settings;
}

MonitoringConfig monitoringFrom(const Fields& fields)
{
    MonitoringConfig monitoring;
    for (const auto& id : fields.required<Json::Strings>("selectedCalendarIDs"))
        monitoring.selectedCalendarIDs.emplace(id);
    return monitoring;
}

template <std::size_t count>
Json::Value read(std::string_view document, const std::array<std::string_view, count>& names)
{
    auto value = Json::read(document, names);
    if (!value)
        throw DecodingError("the document is not JSON");
    return std::move(*value);
}

// --- Writing ---

Json::Value number(double value, std::string_view name)
{
    if (!std::isfinite(value))
        throw EncodingError(std::string(name) + " is not a finite number");
    return value;
}

Json::Value number(Seconds value, std::string_view name)
{
    return number(value.count(), name);
}

Json::Value number(Instant value, std::string_view name)
{
    return number(secondsSince1970(value), name);
}

Json::Members membersOf(const AlarmSettings& settings)
{
    return {
        {"leadTime", number(settings.leadTime, "leadTime")},
        {"style", std::string(rawValue(settings.style))},
        {"ignoreAllDay", settings.ignoreAllDay},
        {"soundName", settings.soundName.utf8()},
        {"snoozeInterval", number(settings.snoozeInterval, "snoozeInterval")},
        {"raiseVolume", settings.raiseVolume},
        {"keepAwake", settings.keepAwake},
    };
}

Json::Members membersOf(const MonitoringConfig& monitoring)
{
    Json::Strings ids;
    for (const auto& id : monitoring.selectedCalendarIDs)
        ids.insert(id.utf8());
    return {{"selectedCalendarIDs", std::move(ids)}};
}

constexpr std::array<std::string_view, 11> configurationNames{"masterEnabled", "settings", "monitoring",
    "leadTime", "style", "ignoreAllDay", "soundName", "snoozeInterval", "raiseVolume", "keepAwake",
    "selectedCalendarIDs"};
constexpr std::array<std::string_view, 4> calendarNames{"id", "title", "accountName", "colorHex"};
constexpr std::array<std::string_view, 6> meetingNames{
    "id", "calendarID", "title", "start", "end", "isAllDay"};
constexpr std::array<std::string_view, 6> alarmNames{
    "id", "meetingID", "title", "fireDate", "meetingStart", "calendarID"};

}

std::string encode(const TinkraConfiguration& configuration)
{
    return Json::write({
        {"masterEnabled", configuration.masterEnabled},
        {"settings", membersOf(configuration.settings)},
        {"monitoring", membersOf(configuration.monitoring)},
    });
}

std::string encode(const CalendarRef& calendar)
{
    Json::Members members{
        {"id", calendar.id.utf8()},
        {"title", calendar.title.utf8()},
        {"accountName", calendar.accountName.utf8()},
    };
    if (calendar.colorHex)
        members.push_back({"colorHex", calendar.colorHex->utf8()});
    return Json::write(members);
}

std::string encode(const Meeting& meeting)
{
    return Json::write({
        {"id", meeting.id.utf8()},
        {"calendarID", meeting.calendarID.utf8()},
        {"title", meeting.title.utf8()},
        {"start", number(meeting.start, "start")},
        {"end", number(meeting.end, "end")},
        {"isAllDay", meeting.isAllDay},
    });
}

std::string encode(const ScheduledAlarm& alarm)
{
    return Json::write({
        {"id", alarm.id.utf8()},
        {"meetingID", alarm.meetingID.utf8()},
        {"title", alarm.title.utf8()},
        {"fireDate", number(alarm.fireDate, "fireDate")},
        {"meetingStart", number(alarm.meetingStart, "meetingStart")},
        {"calendarID", alarm.calendarID.utf8()},
    });
}

template <> TinkraConfiguration decode<TinkraConfiguration>(std::string_view document)
{
    const auto value = read(document, configurationNames);
    const Fields fields(value, "");
    return {
        .masterEnabled = fields.required<bool>("masterEnabled"),
        .settings = settingsFrom(fields.object("settings")),
        .monitoring = monitoringFrom(fields.object("monitoring")),
    };
}

template <> CalendarRef decode<CalendarRef>(std::string_view document)
{
    const auto value = read(document, calendarNames);
    const Fields fields(value, "");
    CalendarRef calendar{fields.text("id"), fields.text("title"), fields.text("accountName"), std::nullopt};
    if (const auto* color = fields.optional<std::string>("colorHex"))
        calendar.colorHex = Text{*color};
    return calendar;
}

template <> Meeting decode<Meeting>(std::string_view document)
{
    const auto value = read(document, meetingNames);
    const Fields fields(value, "");
    return {fields.text("id"), fields.text("calendarID"), fields.text("title"), fields.instant("start"),
        fields.instant("end"), fields.required<bool>("isAllDay")};
}

template <> ScheduledAlarm decode<ScheduledAlarm>(std::string_view document)
{
    const auto value = read(document, alarmNames);
    const Fields fields(value, "");
    return {fields.text("id"), fields.text("meetingID"), fields.text("title"), fields.instant("fireDate"),
        fields.instant("meetingStart"), fields.text("calendarID")};
}

}
