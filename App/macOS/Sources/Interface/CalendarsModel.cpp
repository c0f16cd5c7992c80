#include "Interface/CalendarsModel.h"

#include "Interface/QtText.h"

#include <algorithm>

namespace Tinkra {

CalendarsModel::CalendarsModel(std::vector<CalendarRef> calendars, QObject* parent)
    : QAbstractListModel(parent)
    , m_calendars(std::move(calendars))
    , m_selected(m_calendars.size(), false)
{
}

void CalendarsModel::showSelection(const MonitoringConfig& monitoring)
{
    for (std::size_t i = 0; i < m_calendars.size(); ++i) {
        const bool selected = monitoring.selectedCalendarIDs.contains(m_calendars[i].id);
        if (m_selected[i] == selected)
            continue;
        m_selected[i] = selected;
        const auto changed = index(static_cast<int>(i));
        Q_EMIT dataChanged(changed, changed, {Selected});
    }
}

std::size_t CalendarsModel::selectedCount() const
{
    return static_cast<std::size_t>(std::ranges::count(m_selected, true));
}

int CalendarsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_calendars.size());
}

QVariant CalendarsModel::data(const QModelIndex& index, int role) const
{
    const auto place = static_cast<std::size_t>(index.row());
    const auto& calendar = m_calendars.at(place);
    switch (role) {
    case CalendarID:
        return toQt(calendar.id);
    case Title:
        return toQt(calendar.title);
    case ColorHex:
        return calendar.colorHex ? toQt(*calendar.colorHex) : QString();
    case Selected:
        return static_cast<bool>(m_selected.at(place));
    default:
        return {};
    }
}

QHash<int, QByteArray> CalendarsModel::roleNames() const
{
    return {{CalendarID, "calendarID"}, {Title, "title"}, {ColorHex, "colorHex"}, {Selected, "selected"}};
}

}
