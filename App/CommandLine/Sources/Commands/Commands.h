#pragma once

#include "ExitCode.h"
#include "Session.h"

#include <string>
#include <vector>

namespace Tinkra::CommandLine {

// One function for each command. They complain on standard error themselves.

/// Every calendar that the user could choose, whether or not access to calendars was granted before. May
/// throw.
Task<std::vector<CalendarRef>> calendarsToChooseFrom(SessionPtr session);

/// Accounts, calendars, identifiers, colours, and which calendars are monitored.
Task<ExitCode> listCalendars(SessionPtr session, Format format);

enum class Selection { Add, Remove };

/// Changes which calendars are monitored, saves that, and synchronises. An identifier that nothing is known
/// of stops it before anything is changed.
Task<ExitCode> changeSelection(SessionPtr session, Selection selection, std::vector<std::string> ids);

/// The alarms of the next `days` days.
Task<ExitCode> listUpcoming(SessionPtr session, int days, Format format);

/// One pass; prints what was armed and cancelled.
Task<ExitCode> synchronize(SessionPtr session, Format format);

/// What the notification service holds.
Task<ExitCode> listPending(SessionPtr session, Format format);

/// Rings in the application as an alarm would; it is started when it does not run.
Task<ExitCode> ringTestAlarm(SessionPtr session);

/// Looks at everything that alarms depend on; fails when they may not ring.
Task<ExitCode> diagnose(SessionPtr session, Format format);

}
