#pragma once

#include <cstddef>
#include <string>

namespace Tinkra::Benchmarks {

/// Reads every .ics file below `path` and finds every line end in it: what reading them costs at the least.
/// Gives the number of lines.
std::size_t scanLines(const std::string& path);

/// The bytes of all SUMMARY values below `path`, continuation lines included, as they stand in the files.
std::size_t titleBytes(const std::string& path);

}
