#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Tinkra::WakeHelper {

/// The users who have a folder below this one: the names that are a number as the system writes it. At most
/// 1,000 are looked at.
std::vector<std::string> users(const std::filesystem::path& folder);

/// When the machine has to be awake next, in seconds since 1970: the earliest time after `now` of all users'
/// wake files. A folder that is no folder, does not belong to its user or can be written to by others does
/// not count, and neither does a file that is not a plain file of its user.
std::optional<std::int64_t> earliestWake(const std::filesystem::path& folder, std::int64_t now);

}
