#pragma once

#include "TinkraCore/Models/Meeting.h"
#include "TinkraCore/Models/ScheduledAlarm.h"

#include <iomanip>
#include <ostream>

// How GoogleTest shows our records when an expectation fails.
namespace Tinkra {

inline void PrintTo(const Text& text, std::ostream* out)
{
    *out << '"' << text.utf8() << '"';
}

inline void PrintTo(const Meeting& meeting, std::ostream* out)
{
    *out << "meeting " << meeting.id.utf8() << " \"" << meeting.title.utf8() << "\" at "
         << std::setprecision(17) << secondsSince1970(meeting.start);
}

inline void PrintTo(const ScheduledAlarm& alarm, std::ostream* out)
{
    *out << "alarm " << alarm.id.utf8() << " \"" << alarm.title.utf8() << "\" at " << std::setprecision(17)
         << secondsSince1970(alarm.fireDate);
}

}
