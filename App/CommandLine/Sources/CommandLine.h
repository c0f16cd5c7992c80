#pragma once

#include "ExitCode.h"

#include "TinkraSystem/SystemServices.h"

#include <functional>
#include <iosfwd>

namespace Tinkra::CommandLine {

/// The program's surroundings.
struct Surroundings {
    std::istream& in;
    std::ostream& out;
    std::ostream& error;
    std::function<System::SystemServices()> makeServices; ///< called once at most, by commands that need them
    std::function<Instant()> now;
};

/// Understands the command line and carries it out.
ExitCode run(int argumentCount, const char* const* arguments, const Surroundings& surroundings);

}
