#pragma once

#include "AppModel/CalendarsByAccount.h"
#include "Interface/CalendarsModel.h"

#include <memory>

namespace Tinkra {

/// The accounts as rows, each with the model of its calendars.
class AccountsModel : public QAbstractListModel {
public:
    enum Role { Account = Qt::UserRole, CountText, AnySelected, AllSelected, Calendars };

    /// Rows are made anew only when accounts or calendars have changed.
    void show(const std::vector<AccountCalendars>& accounts, const MonitoringConfig& monitoring);

    /// The identifiers of an account's calendars; none for an account that is not there.
    std::vector<Text> calendarIDs(const Text& account) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<AccountCalendars> m_accounts;
    std::vector<std::unique_ptr<CalendarsModel>> m_calendars; ///< of each account
};

}
