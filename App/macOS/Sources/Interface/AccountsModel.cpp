#include "Interface/AccountsModel.h"

#include "Interface/QtText.h"

#include "ViewSupport/SelectionText.h"

#include <algorithm>

namespace Tinkra {

void AccountsModel::show(const std::vector<AccountCalendars>& accounts, const MonitoringConfig& monitoring)
{
    if (accounts != m_accounts) {
        beginResetModel();
        m_accounts = accounts;
        m_calendars.clear();
        for (const auto& account : m_accounts) {
            m_calendars.push_back(std::make_unique<CalendarsModel>(account.calendars, this));
            m_calendars.back()->showSelection(monitoring);
        }
        endResetModel();
        return;
    }
    for (int row = 0; row < rowCount(); ++row) {
        auto& calendars = *m_calendars[static_cast<std::size_t>(row)];
        const auto before = calendars.selectedCount();
        calendars.showSelection(monitoring);
        if (calendars.selectedCount() != before)
            Q_EMIT dataChanged(index(row), index(row), {CountText, AnySelected, AllSelected});
    }
}

std::vector<Text> AccountsModel::calendarIDs(const Text& account) const
{
    std::vector<Text> ids;
    const auto found = std::ranges::find(m_accounts, account, &AccountCalendars::account);
    if (found == m_accounts.end())
        return ids;
    for (const auto& calendar : found->calendars)
        ids.push_back(calendar.id);
    return ids;
}

int AccountsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_accounts.size());
}

QVariant AccountsModel::data(const QModelIndex& index, int role) const
{
    const auto place = static_cast<std::size_t>(index.row());
    auto* calendars = m_calendars.at(place).get();
    const auto all = calendars->calendars().size();
    switch (role) {
    case Account:
        return toQt(m_accounts.at(place).account);
    case CountText:
        return QString::fromStdString(selectionText(calendars->selectedCount(), all));
    case AnySelected:
        return calendars->selectedCount() > 0;
    case AllSelected:
        return calendars->selectedCount() == all;
    case Calendars:
        return QVariant::fromValue<QObject*>(calendars);
    default:
        return {};
    }
}

QHash<int, QByteArray> AccountsModel::roleNames() const
{
    return {{Account, "account"}, {CountText, "countText"}, {AnySelected, "anySelected"},
        {AllSelected, "allSelected"}, {Calendars, "calendars"}};
}

}
