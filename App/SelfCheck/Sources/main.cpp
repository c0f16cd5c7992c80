#include "SelfCheck.h"

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>

#include <algorithm>
#include <cstdlib>
#include <iostream>

int main()
{
    using namespace Tinkra;

    std::vector<SelfCheckLine> lines;
    asio::io_context loop;
    asio::co_spawn(loop, selfCheck(System::makeSystemServices()),
        [&lines](const std::exception_ptr& error, std::vector<SelfCheckLine> result) {
            if (error)
                std::rethrow_exception(error);
            lines = std::move(result);
        });
    loop.run();

    for (const auto& line : lines)
        std::cout << (line.hasAnswered ? "ok      " : "FAILED  ") << line.service << ": " << line.answer
                  << '\n';
    const bool isWell = !lines.empty() && std::ranges::all_of(lines, &SelfCheckLine::hasAnswered);
    return isWell ? EXIT_SUCCESS : EXIT_FAILURE;
}
