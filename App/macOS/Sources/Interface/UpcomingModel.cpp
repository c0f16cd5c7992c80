#include "Interface/UpcomingModel.h"

#include "Interface/QtText.h"

#include <algorithm>

namespace Tinkra {

namespace {

/// Of the first calendar with this identifier.
QString colorHex(const Text& calendarID, const std::vector<CalendarRef>& calendars)
{
    const auto found = std::ranges::find(calendars, calendarID, &CalendarRef::id);
    return found != calendars.end() && found->colorHex ? toQt(*found->colorHex) : QString();
}

}

UpcomingModel::UpcomingModel(TimeStyle style)
    : m_style(std::move(style))
{
}

UpcomingModel::Row UpcomingModel::row(
    const ScheduledAlarm& alarm, const std::vector<CalendarRef>& calendars) const
{
    return {.title = toQt(alarm.title),
        .time = QString::fromStdString(hourAndMinuteText(alarm.meetingStart, m_style)),
        .weekdayTime = QString::fromStdString(weekdayHourAndMinuteText(alarm.meetingStart, m_style)),
        .fireDate = secondsSince1970(alarm.fireDate),
        .colorHex = colorHex(alarm.calendarID, calendars)};
}

void UpcomingModel::show(const std::vector<ScheduledAlarm>& alarms, const std::vector<CalendarRef>& calendars)
{
    std::vector<Row> rows;
    rows.reserve(alarms.size());
    for (const auto& alarm : alarms)
        rows.push_back(row(alarm, calendars));
    if (rows == m_rows)
        return;
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int UpcomingModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant UpcomingModel::data(const QModelIndex& index, int role) const
{
    const auto& row = m_rows.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case Title:
        return row.title;
    case Time:
        return row.time;
    case WeekdayTime:
        return row.weekdayTime;
    case FireDate:
        return row.fireDate;
    case ColorHex:
        return row.colorHex;
    default:
        return {};
    }
}

QHash<int, QByteArray> UpcomingModel::roleNames() const
{
    return {{Title, "title"}, {Time, "time"}, {WeekdayTime, "weekdayTime"}, {FireDate, "fireDate"},
        {ColorHex, "colorHex"}};
}

}
