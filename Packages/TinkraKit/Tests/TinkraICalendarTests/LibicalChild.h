#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Tinkra::ICalendar::Test {

/// What libical made of a rule.
struct LibicalAnswer {
    enum class Kind {
        Gave,
        Refused, ///< it calls the rule malformed
        TookTooLong,
        Crashed,
    };

    Kind kind = Kind::Gave;
    std::vector<std::string> times; ///< "19970902T090000"
};

/// The first `atMost` times of a rule in floating time, asked of libical in a process of its own with little
/// time and memory, because it may hang or crash.
LibicalAnswer askLibical(const std::string& start, const std::string& rule, std::size_t atMost);

}
