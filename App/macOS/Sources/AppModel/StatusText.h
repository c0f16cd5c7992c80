#pragma once

#include "TinkraCore/Models/ScheduledAlarm.h"
#include "TinkraCore/Models/TinkraConfiguration.h"

#include <string>
#include <vector>

namespace Tinkra {

/// The one line that says how things stand after a synchronisation.
std::string statusText(const TinkraConfiguration& configuration, const std::vector<ScheduledAlarm>& upcoming);

/// The line after a snooze; minutes are cut off.
std::string snoozedText(Seconds interval);

}
