#include "TinkraSystemLinux/LocalCalendarLinux.h"
#include "TinkraTestSupport/FakeLocalCalendar.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace Tinkra::System {
namespace {

/// Both kinds stand one hour ahead of UTC.
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

template <typename Kind> class LocalCalendarContract : public testing::Test {
protected:
    DateComponents at(double seconds) { return kind.calendar.components(instantAt(seconds)); }

    Kind kind;
};

using Kinds = testing::Types<InMemory, OfTheMachine>;
TYPED_TEST_SUITE(LocalCalendarContract, Kinds);

TYPED_TEST(LocalCalendarContract, SaysWhatTheWallClockShows)
{
    EXPECT_EQ(this->at(1'704'099'570), (DateComponents{2024, 1, 1, 9, 59, 30}));
}

TYPED_TEST(LocalCalendarContract, CutsFractionsOffDownwards)
{
    EXPECT_EQ(this->at(1'704'099'570.999), (DateComponents{2024, 1, 1, 9, 59, 30}));
}

TYPED_TEST(LocalCalendarContract, CutsFractionsOffDownwardsBefore1970Too)
{
    EXPECT_EQ(this->at(-0.5), (DateComponents{1970, 1, 1, 0, 59, 59}));
    EXPECT_EQ(this->at(-3600.25), (DateComponents{1969, 12, 31, 23, 59, 59}));
}

TYPED_TEST(LocalCalendarContract, KnowsLeapDays)
{
    EXPECT_EQ(this->at(1'709'204'400), (DateComponents{2024, 2, 29, 12, 0, 0}));
}

TYPED_TEST(LocalCalendarContract, GoesOnAfter2038)
{
    EXPECT_EQ(this->at(4'102'444'800), (DateComponents{2100, 1, 1, 1, 0, 0}));
}

}
}
