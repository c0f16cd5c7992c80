#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/FakeDefaults.h"
#include "TinkraTestSupport/FakeEventStore.h"
#include "TinkraTestSupport/FakeLocalCalendar.h"
#include "TinkraTestSupport/FakeNotificationCenter.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace Tinkra::System {
namespace {

const auto trouble = std::make_exception_ptr(std::runtime_error("trouble"));

StoredEvent event(std::string id, Instant start, std::optional<Instant> end, std::string calendar = "work")
{
    return {.details = EventDetails{.eventIdentifier = id,
                .calendarItemIdentifier = id,
                .calendarIdentifier = std::move(calendar),
                .title = "Title"},
        .start = start,
        .end = end};
}

TEST(FakeEventStore, ReportsTheEventsThatOverlapTheRangeInItsOwnOrder)
{
    FakeEventStore store;
    store.setEvents({event("late", noon + Seconds{50}, std::nullopt), event("point", noon, std::nullopt),
        event("over", noon - Seconds{10}, noon), event("next", noon + Seconds{60}, noon + Seconds{70}),
        event("elsewhere", noon, std::nullopt, "private")});

    const auto found = run(store.events(noon, noon + Seconds{60}, {"work", "unknown"}));

    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].details->eventIdentifier, "late");
    EXPECT_EQ(found[1].details->eventIdentifier, "point");
    EXPECT_EQ(store.log().calls(), std::vector<std::string>{"events [work, unknown]"});
}

TEST(FakeEventStore, IsEmptyWithoutAccess)
{
    FakeEventStore store;
    store.setCalendars({{"work", "Work", "Cloud", std::nullopt}});
    store.setEvents({event("point", noon, std::nullopt)});
    store.answerRequestsWith(false);

    EXPECT_FALSE(run(store.requestFullAccess()));

    EXPECT_EQ(store.authorizationStatus(), CalendarAuthorization::Denied);
    EXPECT_TRUE(run(store.calendars()).empty());
    EXPECT_TRUE(run(store.events(noon, noon + Seconds{1}, {"work"})).empty());
}

TEST(FakeEventStore, ThrowsWhenToldTo)
{
    FakeEventStore store;
    store.failWith(trouble);
    store.failRequestsWith(trouble);

    EXPECT_THROW(run(store.calendars()), std::runtime_error);
    EXPECT_THROW(run(store.events(noon, noon, {})), std::runtime_error);
    EXPECT_THROW(run(store.requestFullAccess()), std::runtime_error);
}

TEST(FakeEventStore, TellsItsObserversUntilTheyLetGo)
{
    FakeEventStore store;
    int changes = 0;
    auto observation = store.observeChanges([&changes] { ++changes; });

    store.notifyChanged();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(store.observerCount(), 1U);

    observation.reset();
    store.notifyChanged();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(store.observerCount(), 0U);
}

TEST(FakeNotificationCenter, KeepsARequestUntilItIsRemovedOrDelivered)
{
    FakeNotificationCenter center;
    NotificationRequest request;
    request.identifier = "a#1";
    run(center.add(request));
    request.content.title = "Replaced";
    run(center.add(request));
    ASSERT_EQ(run(center.pendingRequests()).size(), 1U);
    EXPECT_EQ(center.pending()[0].content.title, "Replaced");

    EXPECT_TRUE(center.deliver("a#1"));
    EXPECT_FALSE(center.deliver("a#1"));

    run(center.add(request));
    run(center.removePending({"a#1", "unknown"}));
    EXPECT_TRUE(center.pending().empty());
}

TEST(FakeNotificationCenter, AnswersAndFailsWhenToldTo)
{
    FakeNotificationCenter center;
    center.answerRequestsWith(false);
    EXPECT_FALSE(run(center.requestAuthorization(7)));
    EXPECT_EQ(run(center.authorizationStatus()), NotificationAuthorization::Denied);
    EXPECT_EQ(center.log().calls().front(), "requestAuthorization 7");

    center.failRequestsWith(trouble);
    EXPECT_THROW(run(center.requestAuthorization(7)), std::runtime_error);
    center.failAddingWith(trouble);
    EXPECT_THROW(run(center.add({})), std::runtime_error);
    EXPECT_TRUE(center.pending().empty());
}

TEST(FakeDefaults, KeepsTheExactBytes)
{
    FakeDefaults defaults;
    EXPECT_EQ(defaults.data("key"), std::nullopt);

    const std::string bytes("a\0b\xff", 4);
    defaults.setData("key", bytes);

    EXPECT_EQ(defaults.data("key"), bytes);
    EXPECT_EQ(defaults.keys(), std::vector<std::string>{"key"});
}

TEST(FakeDefaults, GivesNothingForWhatIsNotData)
{
    FakeDefaults defaults;
    defaults.setSomethingElse("key");
    EXPECT_EQ(defaults.data("key"), std::nullopt);
    EXPECT_EQ(defaults.keys(), std::vector<std::string>{"key"});

    defaults.setData("key", "data");
    EXPECT_EQ(defaults.data("key"), "data");
}

TEST(FakeDefaults, LeavesTheOldValueWhenAWriteFails)
{
    FakeDefaults defaults;
    defaults.setData("key", "old");
    defaults.failWrites();

    defaults.setData("key", "new");

    EXPECT_EQ(defaults.data("key"), "old");
    EXPECT_EQ(defaults.writeCount(), 1U);
}

TEST(FakeLocalCalendar, CutsFractionsOffDownwardsAndFollowsItsOffset)
{
    FakeLocalCalendar calendar;
    EXPECT_EQ(calendar.components(noon + Seconds{0.9}), (DateComponents{2023, 11, 15, 12, 0, 0}));
    EXPECT_EQ(calendar.components(instantAt(-0.5)), (DateComponents{1969, 12, 31, 23, 59, 59}));

    calendar.setOffset(Seconds{13 * 3600});
    EXPECT_EQ(calendar.components(noon), (DateComponents{2023, 11, 16, 1, 0, 0}));
}

}
}
