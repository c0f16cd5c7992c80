#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace Tinkra {

/// Opens and reads every .ics file below `folder` with plain system calls, one buffer for all, and hands over
/// its name and bytes. What any reader of these files has to do before it can begin.
void forEachCalendarFile(const std::filesystem::path& folder,
    const std::function<void(std::string_view name, std::string_view bytes)>& sink);

/// The lower bound of reading: every line end of `bytes`, found with memchr.
std::size_t countLines(std::string_view bytes);

}
