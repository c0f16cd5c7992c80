#include "TinkraTestSupport/UnimplementedClock.h"

#include <gtest/gtest.h>

namespace Tinkra {

Instant UnimplementedClock::now() const
{
    ADD_FAILURE() << "now() was asked of a clock that was not to be used";
    return instantAt(0);
}

Task<> UnimplementedClock::sleepUntil(Instant, std::stop_token)
{
    ADD_FAILURE() << "sleepUntil() was called on a clock that was not to be used";
    co_return;
}

Task<> UnimplementedClock::sleepFor(Seconds, std::stop_token)
{
    ADD_FAILURE() << "sleepFor() was called on a clock that was not to be used";
    co_return;
}

}
