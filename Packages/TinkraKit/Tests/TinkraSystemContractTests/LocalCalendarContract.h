#pragma once

#include "TinkraSystem/LocalCalendar.h"

#include <gtest/gtest.h>

namespace Tinkra::System {

/// What all calendars do. A kind has a `calendar` one hour ahead of UTC.
template <typename Kind> class LocalCalendarContract : public testing::Test {
protected:
    DateComponents at(double seconds) { return kind.calendar.components(instantAt(seconds)); }

    Kind kind;
};

TYPED_TEST_SUITE_P(LocalCalendarContract);

TYPED_TEST_P(LocalCalendarContract, SaysWhatTheWallClockShows)
{
    EXPECT_EQ(this->at(1'704'099'570), (DateComponents{2024, 1, 1, 9, 59, 30}));
}

TYPED_TEST_P(LocalCalendarContract, CutsFractionsOffDownwards)
{
    EXPECT_EQ(this->at(1'704'099'570.999), (DateComponents{2024, 1, 1, 9, 59, 30}));
}

TYPED_TEST_P(LocalCalendarContract, CutsFractionsOffDownwardsBefore1970Too)
{
    EXPECT_EQ(this->at(-0.5), (DateComponents{1970, 1, 1, 0, 59, 59}));
    EXPECT_EQ(this->at(-3600.25), (DateComponents{1969, 12, 31, 23, 59, 59}));
}

TYPED_TEST_P(LocalCalendarContract, KnowsLeapDays)
{
    EXPECT_EQ(this->at(1'709'204'400), (DateComponents{2024, 2, 29, 12, 0, 0}));
}

TYPED_TEST_P(LocalCalendarContract, GoesOnAfter2038)
{
    EXPECT_EQ(this->at(4'102'444'800), (DateComponents{2100, 1, 1, 1, 0, 0}));
}

REGISTER_TYPED_TEST_SUITE_P(LocalCalendarContract, SaysWhatTheWallClockShows, CutsFractionsOffDownwards,
    CutsFractionsOffDownwardsBefore1970Too, KnowsLeapDays, GoesOnAfter2038);

}
