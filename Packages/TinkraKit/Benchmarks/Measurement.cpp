#include "Measurement.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace Tinkra {

std::vector<double> medianSeconds(const std::vector<Work>& works, int rounds)
{
    std::vector<std::vector<double>> times(works.size());
    for (int round = -1; round < rounds; ++round) {
        for (std::size_t i = 0; i < works.size(); ++i) {
            const auto begin = std::chrono::steady_clock::now();
            works[i].run();
            const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
            if (round >= 0)
                times[i].push_back(taken.count());
        }
    }
    std::vector<double> medians;
    medians.reserve(works.size());
    for (auto& each : times) {
        std::nth_element(each.begin(), each.begin() + rounds / 2, each.end());
        medians.push_back(each[static_cast<std::size_t>(rounds) / 2]);
    }
    return medians;
}

void runProgram(const std::vector<std::string>& arguments)
{
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (const auto& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int error = posix_spawnp(&child, argv.front(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    if (error != 0 || waitpid(child, &status, 0) != child || status != 0)
        throw std::runtime_error{"the program failed: " + arguments.front()};
}

}
