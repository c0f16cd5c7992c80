#include "AppModel/CalendarsByAccount.h"

#include <algorithm>
#include <map>
#include <utility>

namespace Tinkra {

std::vector<AccountCalendars> calendarsByAccount(const std::vector<CalendarRef>& calendars)
{
    std::map<Text, std::vector<CalendarRef>> byName;
    for (const auto& calendar : calendars)
        byName[calendar.accountName].push_back(calendar);

    std::vector<AccountCalendars> accounts;
    accounts.reserve(byName.size());
    for (auto& [name, group] : byName) {
        std::ranges::stable_sort(group, {}, &CalendarRef::title);
        accounts.push_back({name, std::move(group)});
    }
    return accounts;
}

}
