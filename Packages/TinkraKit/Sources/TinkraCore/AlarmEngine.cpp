#include "TinkraCore/AlarmEngine.h"
#include "TinkraCore/MonitoringService.h"
#include "TinkraCore/Models/Coding.h"
namespace Tinkra { std::vector<ScheduledAlarm> AlarmEngine::desiredAlarms(const std::vector<Meeting>&, const AlarmSettings&, const CalendarIDs&, Instant) const { return {}; } }
