#pragma once

#include <cstdint>
#include <optional>

namespace Tinkra::WakeHelper {

/// Has the system wake the machine at this time, in seconds since 1970, and at no other time of ours. False
/// when the system refuses, as it does to everybody but root.
bool setWakeAlarm(std::optional<std::int64_t> seconds);

}
