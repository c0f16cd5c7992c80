#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Tinkra {

/// Something to measure beside others.
struct Work {
    std::string name;
    std::function<void()> run;
};

/// Runs all of `works` in turn, `rounds` times after one round that does not count, and gives the median of
/// each in seconds of wall time. Interleaved, so that a slow minute of the machine is everybody's.
std::vector<double> medianSeconds(const std::vector<Work>& works, int rounds);

/// Starts the program with these arguments, its output thrown away, and waits for it. Throws when it fails.
void runProgram(const std::vector<std::string>& arguments);

}
