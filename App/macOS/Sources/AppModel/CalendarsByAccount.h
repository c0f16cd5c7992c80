#pragma once

#include "TinkraCore/Models/CalendarRef.h"

#include <vector>

namespace Tinkra {

/// The calendars of one account.
struct AccountCalendars {
    Text account;
    std::vector<CalendarRef> calendars;

    friend bool operator==(const AccountCalendars&, const AccountCalendars&) = default;
};

/// Accounts in ascending order of their names, the calendars of each in ascending order of their titles, both
/// in the order of `Text`; calendars of equal title keep their order.
std::vector<AccountCalendars> calendarsByAccount(const std::vector<CalendarRef>& calendars);

}
