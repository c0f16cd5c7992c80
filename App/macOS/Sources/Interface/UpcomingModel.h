#pragma once

#include "TinkraCore/Models/CalendarRef.h"
#include "TinkraCore/Models/ScheduledAlarm.h"
#include "ViewSupport/TimeText.h"

#include <QAbstractListModel>

#include <vector>

namespace Tinkra {

/// The upcoming alarms as rows, soonest first.
class UpcomingModel : public QAbstractListModel {
public:
    enum Role { Title = Qt::UserRole, Time, WeekdayTime, FireDate, ColorHex };

    explicit UpcomingModel(TimeStyle style);

    /// Shows these alarms in the colours of their calendars.
    void show(const std::vector<ScheduledAlarm>& alarms, const std::vector<CalendarRef>& calendars);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    struct Row {
        QString title;
        QString time; ///< of the meeting's start
        QString weekdayTime; ///< likewise
        double fireDate; ///< seconds since 1970
        QString colorHex; ///< empty: the calendar has none, or is gone

        friend bool operator==(const Row&, const Row&) = default;
    };

    Row row(const ScheduledAlarm& alarm, const std::vector<CalendarRef>& calendars) const;

    TimeStyle m_style;
    std::vector<Row> m_rows;
};

}
