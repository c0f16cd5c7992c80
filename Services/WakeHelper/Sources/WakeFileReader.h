#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace Tinkra::WakeHelper {

/// The wake that the file asks for, in seconds since 1970, when that lies after `now`; nothing when no wake
/// is wanted, or when there is no such file, or when it is anything but a plain file of the form in
/// WakeFile.h. Never waits for a file and follows no link, because others than root write it.
std::optional<std::int64_t> wakeWanted(const std::filesystem::path& wakeFile, std::int64_t now);

/// The same of a file that is open for reading, wherever it was found.
std::optional<std::int64_t> wakeWanted(int file, std::int64_t now);

}
