#include "CommandLine.h"

#include <chrono>
#include <iostream>

int main(int argumentCount, char** arguments)
{
    using namespace Tinkra;

    std::ios::sync_with_stdio(false);
    const auto exitCode = CommandLine::run(argumentCount, arguments,
        {
            .in = std::cin,
            .out = std::cout,
            .error = std::cerr,
            .makeServices = System::makeSystemServices,
            .now = [] { return Instant(std::chrono::system_clock::now()); },
        });
    return static_cast<int>(exitCode);
}
