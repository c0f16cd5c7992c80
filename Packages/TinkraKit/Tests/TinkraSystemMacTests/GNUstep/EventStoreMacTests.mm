#include "TinkraSystemContractTests/EventStoreContract.h"

#include "StandInEventKit.h"

#include "TinkraSystemMac/EventStoreMac.h"
#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/ImmediateClock.h"

namespace Tinkra::System {
namespace {

struct OfEventKit {
    EKEventStore* native = [[EKEventStore alloc] init];
    std::shared_ptr<EventStoreMac> store =
        std::make_shared<EventStoreMac>(native, std::make_shared<ImmediateClock>(noon));

    OfEventKit()
    {
        StandInCalendars::shared() = {};
        StandInCalendars::shared().calendars = {
            {.identifier = "Cloud/Home", .title = "Home", .sourceTitle = "Cloud", .colorComponents = {}},
            {.identifier = "Cloud/Work",
                .title = "Work",
                .sourceTitle = "Cloud",
                .colorComponents = std::vector{1.0, 0.5, 0.0, 1.0}},
        };
    }

    void add(const std::string& calendar, const std::string& uid, int minutes) const
    {
        add({.details = EventDetails{.eventIdentifier = calendar + "/" + uid,
                 .calendarItemIdentifier = "item",
                 .calendarIdentifier = calendar,
                 .title = uid},
            .start = instantAt(kStart),
            .end = instantAt(kStart + minutes * 60)});
    }

    void add(const StoredEvent& event) const
    {
        StandInCalendars::shared().events.push_back(event);
        tellChange(native);
    }

    static void tellChange(EKEventStore* store)
    {
        [NSNotificationCenter.defaultCenter postNotificationName:EKEventStoreChangedNotification
                                                          object:store];
    }

    void breakDown() const { StandInCalendars::shared().isBroken = true; }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, EventStoreContract, OfEventKit);

class EventStoreMacTest : public testing::Test {
protected:
    EventStoreMacTest() { StandInCalendars::shared().status = EKAuthorizationStatusFullAccess; }

    std::vector<StoredEvent> events(std::vector<std::string> in = {"Cloud/Work"})
    {
        return loop.runInRealTime(
            kind.store->events(instantAt(kStart - 60), instantAt(kStart + 60), std::move(in)));
    }

    OfEventKit kind;
    TestLoop loop;
};

TEST_F(EventStoreMacTest, ReportsCalendarsInTheStoresOrderWithTheColoursAsStored)
{
    EXPECT_EQ(loop.runInRealTime(kind.store->calendars()), StandInCalendars::shared().calendars);
}

TEST_F(EventStoreMacTest, ReportsEveryFieldOfAnEvent)
{
    const StoredEvent event{.details = EventDetails{.eventIdentifier = "ABC123:XYZ",
                                .calendarItemIdentifier = "item",
                                .calendarIdentifier = "Cloud/Work",
                                .title = "Grüße 🦔"},
        .start = instantAt(kStart + 0.9),
        .end = instantAt(kStart + 30),
        .isAllDay = true};
    kind.add(event);

    EXPECT_THAT(events(), ElementsAre(event));
}

TEST_F(EventStoreMacTest, LeavesOutWhatAnEventDoesNotHave)
{
    const StoredEvent event{.details = EventDetails{.eventIdentifier = {},
                                .calendarItemIdentifier = "item",
                                .calendarIdentifier = "Cloud/Work",
                                .title = {}},
        .start = {},
        .end = {}};
    kind.add(event);

    EXPECT_THAT(events(), ElementsAre(event));
}

TEST_F(EventStoreMacTest, AsksForNoEventsWhenNoCalendarIsLeft)
{
    EXPECT_THAT(events({"Cloud/Gone"}), IsEmpty());
    EXPECT_THAT(events({}), IsEmpty());
    EXPECT_EQ(StandInCalendars::shared().queryCount, 0);
}

TEST_F(EventStoreMacTest, GivesEachStatusOfTheSystemItsOwn)
{
    for (const int status : {0, 1, 2, 3, 4}) {
        StandInCalendars::shared().status = static_cast<EKAuthorizationStatus>(status);
        EXPECT_EQ(static_cast<int>(kind.store->authorizationStatus()), status);
    }
    StandInCalendars::shared().status = static_cast<EKAuthorizationStatus>(99);
    EXPECT_EQ(kind.store->authorizationStatus(), CalendarAuthorization::Denied);
}

TEST_F(EventStoreMacTest, IsNotGrantedAccessThatTheUserRefuses)
{
    StandInCalendars::shared().answer = false;

    EXPECT_FALSE(loop.runInRealTime(kind.store->requestFullAccess()));
}

TEST_F(EventStoreMacTest, ThrowsWhenARequestEndsWithAnErrorEvenIfItIsGranted)
{
    StandInCalendars::shared().requestFails = true;

    EXPECT_ANY_THROW(loop.runInRealTime(kind.store->requestFullAccess()));
}

TEST_F(EventStoreMacTest, DoesNotHearOfAnotherStoresChanges)
{
    std::atomic<int> notices{0};
    const auto observation = kind.store->observeChanges([&] { ++notices; });

    OfEventKit::tellChange([[EKEventStore alloc] init]);
    loop.runInRealTime(kind.store->calendars()); // what the thread of the store had to do is done

    EXPECT_EQ(notices, 0);
}

}
}
