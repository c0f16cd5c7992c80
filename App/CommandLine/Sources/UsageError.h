#pragma once

#include <CLI/App.hpp>

#include <string>

namespace Tinkra::CommandLine {

/// What is wrong with a command line that `app` has refused, and what to write instead; one line.
std::string describe(const CLI::ParseError& error, const CLI::App& app);

}
