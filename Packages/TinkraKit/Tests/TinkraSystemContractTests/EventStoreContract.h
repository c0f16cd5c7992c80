#pragma once

#include "TinkraSystem/EventStore.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gmock/gmock.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace Tinkra::System {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

inline constexpr double kStart = 1796115600; // 2026-12-01 09:00:00 UTC, when every event here begins

/// What all stores do. A kind has a `store` with the calendars "Cloud/Home" and "Cloud/Work", a way to change
/// what it holds, and a way to break it.
template <typename Kind> class EventStoreContract : public testing::Test {
protected:
    bool requestFullAccess() { return loop.runInRealTime(store.requestFullAccess()); }
    std::vector<StoredCalendar> calendars() { return loop.runInRealTime(store.calendars()); }

    std::vector<std::string> titles(
        double from = kStart - 3600, double to = kStart + 3600, std::vector<std::string> in = {"Cloud/Work"})
    {
        std::vector<std::string> result;
        for (const auto& event :
            loop.runInRealTime(store.events(instantAt(from), instantAt(to), std::move(in))))
            result.push_back(event.details->title.value());
        return result;
    }

    Kind kind;
    EventStore& store = *kind.store;
    TestLoop loop;
};

TYPED_TEST_SUITE_P(EventStoreContract);

TYPED_TEST_P(EventStoreContract, IsEmptyUntilAccessIsGranted)
{
    this->kind.add("Cloud/Work", "a", 30);

    EXPECT_EQ(this->store.authorizationStatus(), CalendarAuthorization::NotDetermined);
    EXPECT_THAT(this->calendars(), IsEmpty());
    EXPECT_THAT(this->titles(), IsEmpty());
}

TYPED_TEST_P(EventStoreContract, HasFullAccessOnceItIsGranted)
{
    EXPECT_TRUE(this->requestFullAccess());

    EXPECT_EQ(this->store.authorizationStatus(), CalendarAuthorization::FullAccess);
    EXPECT_EQ(this->calendars().size(), 2U);
}

TYPED_TEST_P(EventStoreContract, NamesTheCalendarOfEachEvent)
{
    this->requestFullAccess();
    this->kind.add("Cloud/Home", "a", 30);

    const auto events = this->loop.runInRealTime(
        this->store.events(instantAt(kStart), instantAt(kStart + 1), {"Cloud/Home", "Cloud/Work"}));

    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].details->calendarIdentifier, "Cloud/Home");
    EXPECT_EQ(events[0].start, instantAt(kStart));
    EXPECT_EQ(events[0].end, instantAt(kStart + 1800));
}

TYPED_TEST_P(EventStoreContract, ReportsWhatOverlapsTheRange)
{
    this->requestFullAccess();
    this->kind.add("Cloud/Work", "a", 30);

    EXPECT_THAT(this->titles(kStart - 60, kStart), IsEmpty());
    EXPECT_THAT(this->titles(kStart - 60, kStart + 1), ElementsAre("a"));
    EXPECT_THAT(this->titles(kStart + 60, kStart + 61), ElementsAre("a"));
    EXPECT_THAT(this->titles(kStart + 1799, kStart + 1801), ElementsAre("a"));
    EXPECT_THAT(this->titles(kStart + 1800, kStart + 1801), IsEmpty());
}

TYPED_TEST_P(EventStoreContract, ReportsWhatHasNoLengthWhenItStartsInTheRange)
{
    this->requestFullAccess();
    this->kind.add("Cloud/Work", "a", 0);

    EXPECT_THAT(this->titles(kStart - 60, kStart), IsEmpty());
    EXPECT_THAT(this->titles(kStart, kStart + 1), ElementsAre("a"));
    EXPECT_THAT(this->titles(kStart + 1, kStart + 2), IsEmpty());
}

TYPED_TEST_P(EventStoreContract, ReportsOnlyTheCalendarsAskedForAndIgnoresUnknownOnes)
{
    this->requestFullAccess();
    this->kind.add("Cloud/Work", "work", 30);
    this->kind.add("Cloud/Home", "home", 30);

    EXPECT_THAT(this->titles(kStart, kStart + 1, {"Cloud/Home", "Cloud/Gone"}), ElementsAre("home"));
    EXPECT_THAT(
        this->titles(kStart, kStart + 1, {"Cloud/Work", "Cloud/Home"}), UnorderedElementsAre("home", "work"));
    EXPECT_THAT(this->titles(kStart, kStart + 1, {}), IsEmpty());
}

TYPED_TEST_P(EventStoreContract, SeesWhatWasAddedBeforeTheQuery)
{
    this->requestFullAccess();
    EXPECT_THAT(this->titles(), IsEmpty());

    this->kind.add("Cloud/Work", "a", 30);

    EXPECT_THAT(this->titles(), ElementsAre("a"));
}

TYPED_TEST_P(EventStoreContract, ThrowsRatherThanBeingEmptyWhenItIsBroken)
{
    this->requestFullAccess();
    this->kind.add("Cloud/Work", "a", 30);
    ASSERT_THAT(this->titles(), ElementsAre("a"));

    this->kind.breakDown();

    EXPECT_ANY_THROW(this->calendars());
    EXPECT_ANY_THROW(this->titles());
}

TYPED_TEST_P(EventStoreContract, CallsItsObserversAfterAChangeUntilTheyLetGo)
{
    this->requestFullAccess();
    this->calendars();
    std::mutex mutex;
    std::condition_variable changed;
    int notices = 0;
    std::atomic<int> othersNotices{0};
    auto observation = this->store.observeChanges([&] {
        const std::lock_guard lock{mutex};
        ++notices;
        changed.notify_all();
    });
    auto other = this->store.observeChanges([&] { ++othersNotices; });
    other.reset();
    const int before = othersNotices;

    this->kind.add("Cloud/Work", "a", 30);

    std::unique_lock lock{mutex};
    EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds{20}, [&] { return notices > 0; }));
    EXPECT_EQ(othersNotices, before);
}

TYPED_TEST_P(EventStoreContract, ResumesItsCallerOnTheCallersExecutor)
{
    const auto ask = [](EventStore* store) -> Task<std::thread::id> {
        co_await store->requestFullAccess();
        co_await store->calendars();
        co_return std::this_thread::get_id();
    };

    EXPECT_EQ(this->loop.runInRealTime(ask(&this->store)), std::this_thread::get_id());
}

REGISTER_TYPED_TEST_SUITE_P(EventStoreContract, IsEmptyUntilAccessIsGranted, HasFullAccessOnceItIsGranted,
    NamesTheCalendarOfEachEvent, ReportsWhatOverlapsTheRange, ReportsWhatHasNoLengthWhenItStartsInTheRange,
    ReportsOnlyTheCalendarsAskedForAndIgnoresUnknownOnes, SeesWhatWasAddedBeforeTheQuery,
    ThrowsRatherThanBeingEmptyWhenItIsBroken, CallsItsObserversAfterAChangeUntilTheyLetGo,
    ResumesItsCallerOnTheCallersExecutor);

}
