#pragma once

namespace Tinkra::CommandLine {

/// What the program ends with; the manual page lists them.
enum class ExitCode : int {
    Success = 0,
    Failure = 1, ///< it was tried and did not work; standard error says why
    Usage = 2, ///< the command line was not understood; nothing was done
};

}
