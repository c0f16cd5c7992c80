#include "LocalCalendarContract.h"

#include "TinkraSystemLinux/LocalCalendarLinux.h"
#include "TinkraTestSupport/FakeLocalCalendar.h"

#include <cstdlib>
#include <ctime>

namespace Tinkra::System {
namespace {

struct InMemory {
    FakeLocalCalendar calendar{std::chrono::hours(1)};
};

struct OfTheMachine {
    OfTheMachine() { ::setenv("TZ", "UTC-1", 1); }
    ~OfTheMachine() { ::unsetenv("TZ"); }
    OfTheMachine(const OfTheMachine&) = delete;
    OfTheMachine& operator=(const OfTheMachine&) = delete;

    LocalCalendarLinux calendar;
};

using Kinds = testing::Types<InMemory, OfTheMachine>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, LocalCalendarContract, Kinds);

}
}
