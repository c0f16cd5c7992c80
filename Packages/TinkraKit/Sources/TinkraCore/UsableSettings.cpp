#include "TinkraCore/UsableSettings.h"

#include <algorithm>
#include <cmath>

namespace Tinkra {

namespace {

Seconds within(Seconds least, Seconds value, Seconds otherwise)
{
    return std::isnan(value.count()) ? otherwise : std::clamp(value, least, maximumInterval);
}

}

TinkraConfiguration usable(TinkraConfiguration configuration)
{
    const AlarmSettings defaults;
    auto& settings = configuration.settings;
    settings.leadTime = within(-maximumInterval, settings.leadTime, defaults.leadTime);
    settings.snoozeInterval = within(Seconds::zero(), settings.snoozeInterval, defaults.snoozeInterval);
    return configuration;
}

}
