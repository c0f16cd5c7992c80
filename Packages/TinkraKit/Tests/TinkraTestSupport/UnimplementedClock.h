#pragma once

#include "TinkraConcurrency/Clock.h"

namespace Tinkra {

/// A clock that fails the test when anybody uses it: proof that a flow does not depend on time.
class UnimplementedClock final : public Clock {
public:
    Instant now() const override;
    Task<> sleepUntil(Instant deadline, std::stop_token stop) override;
    Task<> sleepFor(Seconds duration, std::stop_token stop) override;
};

}
