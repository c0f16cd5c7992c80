#pragma once

#include "TinkraCore/Models/CalendarRef.h"
#include "TinkraCore/Models/MonitoringConfig.h"

#include <QAbstractListModel>

#include <vector>

namespace Tinkra {

/// The calendars of one account as rows, each selected or not.
class CalendarsModel : public QAbstractListModel {
public:
    enum Role { CalendarID = Qt::UserRole, Title, ColorHex, Selected };

    CalendarsModel(std::vector<CalendarRef> calendars, QObject* parent);

    const std::vector<CalendarRef>& calendars() const { return m_calendars; }
    /// Shows which of them are selected; rows stay what they are, so that the keyboard stays where it is.
    void showSelection(const MonitoringConfig& monitoring);
    std::size_t selectedCount() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<CalendarRef> m_calendars;
    std::vector<bool> m_selected;
};

}
