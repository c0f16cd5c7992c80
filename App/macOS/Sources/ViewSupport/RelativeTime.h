#pragma once

#include "TinkraConcurrency/Instant.h"

#include <memory>
#include <string>

namespace Tinkra {

/// How long until an alarm, in words that count down: "12 min, 8 sec", "3 hr, 12 min", "2 days, 23 hr".
class RelativeTimeFormat {
public:
    /// `locale` as ICU and POSIX name it.
    explicit RelativeTimeFormat(const std::string& locale);
    RelativeTimeFormat(RelativeTimeFormat&&) noexcept;
    RelativeTimeFormat& operator=(RelativeTimeFormat&&) noexcept;
    ~RelativeTimeFormat();

    /// The two largest units of what is left, in whole seconds rounded up, so that the last second reads 1
    /// and not 0. Below a minute seconds alone; from an hour on, a second unit of none is left out. "now"
    /// once nothing is left.
    std::string text(Seconds left) const;

private:
    struct Formats;
    std::unique_ptr<Formats> m_formats;
};

/// How long the text of a countdown with `left` to go stays true at most: until the next second of the last
/// hour, until the next minute before it. Above 0; a countdown that is over never changes (infinity).
Seconds untilNextChange(Seconds left);

}
