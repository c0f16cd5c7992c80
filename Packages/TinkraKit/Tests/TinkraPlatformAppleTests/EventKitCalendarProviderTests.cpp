#include "TinkraPlatformApple/EventKitCalendarProvider.h"

#include "TinkraTestSupport/FakeEventStore.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <stdexcept>

namespace Tinkra {
namespace {

using System::EventDetails;
using System::FakeEventStore;
using System::StoredCalendar;
using System::StoredEvent;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNineOClock = 1704099600; // 2024-01-01 09:00:00 UTC

StoredCalendar calendar(std::string identifier, std::string title = "Work", std::string account = "Cloud")
{
    return {
        .identifier = std::move(identifier), .title = std::move(title), .sourceTitle = std::move(account)};
}

StoredEvent event(
    double start, std::string identifier = "ABC123:XYZ", std::string calendarIdentifier = "work")
{
    return {
        .details = EventDetails{.eventIdentifier = identifier,
            .calendarItemIdentifier = "item of " + identifier,
            .calendarIdentifier = std::move(calendarIdentifier),
            .title = "Stand-up"},
        .start = instantAt(start),
        .end = instantAt(start + 900),
    };
}

class EventKitCalendarProviderTest : public testing::Test {
protected:
    std::vector<CalendarRef> availableCalendars() { return loop.run(provider.availableCalendars()); }

    std::vector<Meeting> meetings(CalendarIDs in = {"work"})
    {
        return loop.run(provider.meetings(std::move(in), instantAt(0), instantAt(2e9)));
    }

    Meeting meetingOf(StoredEvent stored)
    {
        store->setEvents({std::move(stored)});
        return meetings().at(0);
    }

    std::optional<Text> colorOf(std::optional<std::vector<double>> components)
    {
        auto colored = calendar("work");
        colored.colorComponents = std::move(components);
        store->setCalendars({colored});
        return availableCalendars().at(0).colorHex;
    }

    void SetUp() override { store->setCalendars({calendar("work")}); }

    TestLoop loop;
    std::shared_ptr<FakeEventStore> store = std::make_shared<FakeEventStore>();
    EventKitCalendarProvider provider{store};
};

TEST_F(EventKitCalendarProviderTest, KeepsTheStoreThatItWasGiven)
{
    EXPECT_EQ(provider.store(), store);
    EXPECT_THAT(store->log().calls(), IsEmpty());
}

TEST_F(EventKitCalendarProviderTest, AnswersARequestForAccessAsTheUserDoes)
{
    store->answerRequestsWith(true);
    EXPECT_TRUE(loop.run(provider.requestAccess()));

    store->answerRequestsWith(false);
    EXPECT_FALSE(loop.run(provider.requestAccess()));
    EXPECT_THAT(store->log().calls(), ElementsAre("requestFullAccess", "requestFullAccess"));
}

TEST_F(EventKitCalendarProviderTest, TakesARequestForAccessThatFailsForARefusal)
{
    store->failRequestsWith(std::make_exception_ptr(std::runtime_error("no such service")));

    EXPECT_FALSE(loop.run(provider.requestAccess()));
}

TEST_F(EventKitCalendarProviderTest, ListsCalendarsByAccountAndThenByTitle)
{
    store->setCalendars(
        {calendar("1", "Work", "Cloud"), calendar("2", "Team", "Exchange"), calendar("3", "Home", "Cloud")});

    const auto calendars = availableCalendars();

    EXPECT_THAT(calendars,
        ElementsAre(CalendarRef{"3", "Home", "Cloud", {}}, CalendarRef{"1", "Work", "Cloud", {}},
            CalendarRef{"2", "Team", "Exchange", {}}));
}

TEST_F(EventKitCalendarProviderTest, SortsByScalarOrderAndNotByLocale)
{
    store->setCalendars({calendar("1", "alpha"), calendar("2", "Zeta"), calendar("3", "\u00c4rzte")});

    const auto calendars = availableCalendars();

    // "Ä" sorts as "A" with a combining mark: after "A" and before "Z".
    EXPECT_EQ(calendars.at(0).title, "\u00c4rzte");
    EXPECT_EQ(calendars.at(1).title, "Zeta");
    EXPECT_EQ(calendars.at(2).title, "alpha");
}

TEST_F(EventKitCalendarProviderTest, KeepsTheStoresOrderOfCalendarsWithEqualNames)
{
    // The second title is the decomposed form of the first one.
    store->setCalendars(
        {calendar("2", "Caf\u00e9"), calendar("1", "Cafe\u0301"), calendar("3", "Caf\u00e9")});

    const auto calendars = availableCalendars();

    EXPECT_EQ(calendars.at(0).id, "2");
    EXPECT_EQ(calendars.at(1).id, "1");
    EXPECT_EQ(calendars.at(2).id, "3");
}

TEST_F(EventKitCalendarProviderTest, WritesAColorAsSixUpperCaseDigitsAndIgnoresItsAlpha)
{
    EXPECT_EQ(colorOf({{1.0, 0.5, 0.0, 1.0}}), "#FF8000");
    EXPECT_EQ(colorOf({{0.0, 0.0, 0.0}}), "#000000");
    EXPECT_EQ(colorOf({{0.039, 0.0, 0.75}}), "#0A00BF");
}

TEST_F(EventKitCalendarProviderTest, HasNoColorTextForAGreyScaleColorOrNoColor)
{
    EXPECT_EQ(colorOf({{0.5, 1.0}}), std::nullopt);
    EXPECT_EQ(colorOf(std::vector<double>{}), std::nullopt);
    EXPECT_EQ(colorOf(std::nullopt), std::nullopt);
}

TEST_F(EventKitCalendarProviderTest, RoundsColorComponentsHalfAwayFromZero)
{
    EXPECT_EQ(colorOf({{0.5 / 255, 1.5 / 255, 2.49 / 255}}), "#010202");
    EXPECT_EQ(colorOf({{-0.4 / 255, 0, 0}}), "#000000");
}

TEST_F(EventKitCalendarProviderTest, DoesNotClampColorComponents)
{
    EXPECT_EQ(colorOf({{1.5, 0.0, 2.0}}), "#17F001FE");
    EXPECT_EQ(colorOf({{-1.0 / 255, 0.0, 0.0}}), "#FFFFFFFF0000");
}

TEST_F(EventKitCalendarProviderTest, EndsTheProgramForAColorThatIsNoNumber)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(colorOf({{std::nan(""), 0, 0}}), "colour component");
    EXPECT_DEATH(colorOf({{0, std::numeric_limits<double>::infinity(), 0}}), "colour component");
    EXPECT_DEATH(colorOf({{0, 0, 1e30}}), "colour component");
}

TEST_F(EventKitCalendarProviderTest, AsksTheStoreNothingForAnEmptySet)
{
    store->setEvents({event(kNineOClock)});

    EXPECT_THAT(meetings({}), IsEmpty());
    EXPECT_THAT(store->log().calls(), IsEmpty());
}

TEST_F(EventKitCalendarProviderTest, AsksForNoEventsWhenNoIdentifierMatchesACalendar)
{
    store->setEvents({event(kNineOClock)});

    EXPECT_THAT(meetings({"gone", "never there"}), IsEmpty());
    EXPECT_THAT(store->log().calls(), ElementsAre("calendars"));
}

TEST_F(EventKitCalendarProviderTest, AsksOnlyForCalendarsThatExistInTheStoresOrder)
{
    store->setCalendars({calendar("work"), calendar("team"), calendar("home")});

    meetings({"home", "gone", "work"});

    EXPECT_THAT(store->log().calls(), ElementsAre("calendars", "events [work, home]"));
}

TEST_F(EventKitCalendarProviderTest, FindsACalendarWhoseIdentifierIsWrittenInAnotherUnicodeForm)
{
    store->setCalendars({calendar("Cloud/Caf\u00e9")});
    store->setEvents({event(kNineOClock, "1", "Cloud/Caf\u00e9")});

    EXPECT_EQ(meetings({"Cloud/Cafe\u0301"}).size(), 1U);
    EXPECT_THAT(store->log().calls(), ElementsAre("calendars", "events [Cloud/Caf\u00e9]"));
}

TEST_F(EventKitCalendarProviderTest, NamesAMeetingByEventAndStart)
{
    const auto meeting = meetingOf(event(kNineOClock));

    EXPECT_EQ(meeting,
        (Meeting{"ABC123:XYZ@1704099600", "work", "Stand-up", instantAt(kNineOClock),
            instantAt(kNineOClock + 900), false}));
}

TEST_F(EventKitCalendarProviderTest, TellsTheOccurrencesOfASeriesApartByTheirStart)
{
    constexpr double kWeek = 7 * 86400;
    store->setEvents({event(kNineOClock), event(kNineOClock + kWeek)});

    const auto found = meetings();

    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].id, "ABC123:XYZ@1704099600");
    EXPECT_EQ(found[1].id, "ABC123:XYZ@1704704400");
}

TEST_F(EventKitCalendarProviderTest, CutsOffFractionsOfASecondTowardsZero)
{
    EXPECT_EQ(meetingOf(event(kNineOClock + 0.9)).id, "ABC123:XYZ@1704099600");
    EXPECT_EQ(meetingOf(event(kNineOClock + 0.9)).start, instantAt(kNineOClock + 0.9));

    store->setEvents({event(-0.5), event(-1.5)});
    const auto early = loop.run(provider.meetings({"work"}, instantAt(-10), instantAt(10)));
    EXPECT_EQ(early.at(0).id, "ABC123:XYZ@0");
    EXPECT_EQ(early.at(1).id, "ABC123:XYZ@-1");
}

TEST_F(EventKitCalendarProviderTest, UsesTheItemsIdentifierForAnEventWithoutOne)
{
    auto stored = event(kNineOClock);
    stored.details = EventDetails{
        .eventIdentifier = {}, .calendarItemIdentifier = "item-7", .calendarIdentifier = "work", .title = {}};

    EXPECT_EQ(meetingOf(stored).id, "item-7@1704099600");
}

TEST_F(EventKitCalendarProviderTest, KeepsAnEmptyEventIdentifier)
{
    EXPECT_EQ(meetingOf(event(kNineOClock, "")).id, "@1704099600");
}

TEST_F(EventKitCalendarProviderTest, NamesAnUntitledEventAndLeavesAnEmptyTitleEmpty)
{
    auto stored = event(kNineOClock);
    auto details = *stored.details;
    details.title.reset();
    stored.details = details;
    EXPECT_EQ(meetingOf(stored).title, "Untitled meeting");

    details.title = "";
    stored.details = details;
    EXPECT_TRUE(meetingOf(stored).title.isEmpty());
}

TEST_F(EventKitCalendarProviderTest, EndsAnEventWithoutEndWhereItStarts)
{
    auto stored = event(kNineOClock);
    stored.end.reset();

    EXPECT_EQ(meetingOf(stored).end, instantAt(kNineOClock));
}

TEST_F(EventKitCalendarProviderTest, LeavesOutAnEventWithoutStart)
{
    auto stored = event(kNineOClock, "without");
    stored.start.reset();
    store->setEvents({stored, event(kNineOClock, "with")});

    const auto found = meetings();

    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].id, "with@1704099600");
}

TEST_F(EventKitCalendarProviderTest, LeavesOrderDuplicatesAndAllDayEventsToOthers)
{
    auto allDay = event(kNineOClock - 3600, "all day");
    allDay.isAllDay = true;
    store->setEvents({event(kNineOClock), allDay, event(kNineOClock)});

    const auto found = meetings();

    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0], found[2]);
    EXPECT_TRUE(found[1].isAllDay);
}

TEST_F(EventKitCalendarProviderTest, EndsTheProgramForAStartThatIsNoNumber)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    // The fake reports only what lies in the range, so the range has to reach there.
    const auto ask = [&](double start) {
        store->setEvents({event(start)});
        constexpr auto kInfinity = std::numeric_limits<double>::infinity();
        loop.run(provider.meetings({"work"}, instantAt(-kInfinity), instantAt(kInfinity)));
    };
    EXPECT_DEATH(ask(1e300), "event start");
    EXPECT_DEATH(ask(-std::numeric_limits<double>::infinity()), "event start");
}

TEST_F(EventKitCalendarProviderTest, IsEmptyWithoutAccess)
{
    store->setEvents({event(kNineOClock)});
    store->setAuthorization(System::CalendarAuthorization::Denied);

    EXPECT_THAT(availableCalendars(), IsEmpty());
    EXPECT_THAT(meetings(), IsEmpty());
}

TEST_F(EventKitCalendarProviderTest, PassesTheStoresErrorsOnUnchanged)
{
    struct Unreachable : std::runtime_error {
        using std::runtime_error::runtime_error;
    };
    store->failWith(std::make_exception_ptr(Unreachable("the disk is away")));

    EXPECT_THROW(availableCalendars(), Unreachable);
    EXPECT_THROW(meetings(), Unreachable);
}

}
}
