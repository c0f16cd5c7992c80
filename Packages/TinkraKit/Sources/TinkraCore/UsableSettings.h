#pragma once

#include "TinkraCore/Models/TinkraConfiguration.h"

namespace Tinkra {

/// No lead time and no snooze is longer than ten years.
inline constexpr Seconds maximumInterval = std::chrono::days(3653);

/// A copy of the configuration that can be computed with: a stored lead time or snooze that is out of reach
/// is moved to the nearest usable one (the lead time to ±`maximumInterval`, the snooze to
/// 0...`maximumInterval`), and one that is not a number to its default. What is stored is left as it is.
TinkraConfiguration usable(TinkraConfiguration configuration);

}
