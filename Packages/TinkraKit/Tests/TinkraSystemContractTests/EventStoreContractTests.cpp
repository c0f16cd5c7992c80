#include "TinkraSystemLinux/FolderEventStore.h"
#include "TinkraTestSupport/FakeDefaults.h"
#include "TinkraTestSupport/FakeEventStore.h"
#include "TinkraTestSupport/TemporaryFolder.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gmock/gmock.h>

#include <atomic>
#include <condition_variable>
#include <fstream>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace Tinkra::System {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr double kStart = 1796115600; // 2026-12-01 09:00:00 UTC, when every event here begins

/// One kind of store with the calendars "Cloud/Home" and "Cloud/Work", a way to change what it holds, and a
/// way to break it.
struct InMemory {
    std::shared_ptr<FakeEventStore> store = std::make_shared<FakeEventStore>();
    std::vector<StoredEvent> events;

    InMemory()
    {
        store->setAuthorization(CalendarAuthorization::NotDetermined);
        store->setCalendars({{.identifier = "Cloud/Home", .title = "Home", .sourceTitle = "Cloud"},
            {.identifier = "Cloud/Work", .title = "Work", .sourceTitle = "Cloud"}});
    }

    void add(const std::string& calendar, const std::string& uid, int minutes)
    {
        events.push_back({.eventIdentifier = calendar + "/" + uid,
            .calendarItemIdentifier = calendar + "/" + uid,
            .calendarIdentifier = calendar,
            .title = uid,
            .start = instantAt(kStart),
            .end = instantAt(kStart + minutes * 60)});
        store->setEvents(events);
        store->notifyChanged();
    }

    void breakDown() const { store->failWith(std::make_exception_ptr(std::runtime_error("broken"))); }
};

struct InFolders {
    TemporaryFolder folder;
    std::shared_ptr<FolderEventStore> store;

    InFolders()
    {
        for (const auto* calendar : {"Cloud/Home", "Cloud/Work"})
            std::filesystem::create_directories(folder.path() / "calendars" / calendar);
        FolderStoreOptions options;
        options.roots = {(folder.path() / "calendars").string()};
        store = std::make_shared<FolderEventStore>(std::make_shared<FakeDefaults>(), options);
    }

    void add(const std::string& calendar, const std::string& uid, int minutes) const
    {
        std::ofstream{folder.path() / "calendars" / calendar / (uid + ".ics")}
            << "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:" << uid << "\r\nSUMMARY:" << uid
            << "\r\nDTSTART:20261201T090000Z\r\nDURATION:PT" << minutes
            << "M\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
    }

    void breakDown() const { std::filesystem::rename(folder.path() / "calendars", folder.path() / "away"); }
};

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
            result.push_back(event.title.value());
        return result;
    }

    Kind kind;
    EventStore& store = *kind.store;
    TestLoop loop;
};

using Kinds = testing::Types<InMemory, InFolders>;
TYPED_TEST_SUITE(EventStoreContract, Kinds);

TYPED_TEST(EventStoreContract, IsEmptyUntilAccessIsGranted)
{
    this->kind.add("Cloud/Work", "a", 30);

    EXPECT_EQ(this->store.authorizationStatus(), CalendarAuthorization::NotDetermined);
    EXPECT_THAT(this->calendars(), IsEmpty());
    EXPECT_THAT(this->titles(), IsEmpty());
}

TYPED_TEST(EventStoreContract, HasFullAccessOnceItIsGranted)
{
    EXPECT_TRUE(this->requestFullAccess());

    EXPECT_EQ(this->store.authorizationStatus(), CalendarAuthorization::FullAccess);
    EXPECT_EQ(this->calendars().size(), 2U);
}

TYPED_TEST(EventStoreContract, NamesTheCalendarOfEachEvent)
{
    this->requestFullAccess();
    this->kind.add("Cloud/Home", "a", 30);

    const auto events = this->loop.runInRealTime(
        this->store.events(instantAt(kStart), instantAt(kStart + 1), {"Cloud/Home", "Cloud/Work"}));

    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].calendarIdentifier, "Cloud/Home");
    EXPECT_EQ(events[0].start, instantAt(kStart));
    EXPECT_EQ(events[0].end, instantAt(kStart + 1800));
}

TYPED_TEST(EventStoreContract, ReportsWhatOverlapsTheRange)
{
    this->requestFullAccess();
    this->kind.add("Cloud/Work", "a", 30);

    EXPECT_THAT(this->titles(kStart - 60, kStart), IsEmpty());
    EXPECT_THAT(this->titles(kStart - 60, kStart + 1), ElementsAre("a"));
    EXPECT_THAT(this->titles(kStart + 60, kStart + 61), ElementsAre("a"));
    EXPECT_THAT(this->titles(kStart + 1799, kStart + 1801), ElementsAre("a"));
    EXPECT_THAT(this->titles(kStart + 1800, kStart + 1801), IsEmpty());
}

TYPED_TEST(EventStoreContract, ReportsWhatHasNoLengthWhenItStartsInTheRange)
{
    this->requestFullAccess();
    this->kind.add("Cloud/Work", "a", 0);

    EXPECT_THAT(this->titles(kStart - 60, kStart), IsEmpty());
    EXPECT_THAT(this->titles(kStart, kStart + 1), ElementsAre("a"));
    EXPECT_THAT(this->titles(kStart + 1, kStart + 2), IsEmpty());
}

TYPED_TEST(EventStoreContract, ReportsOnlyTheCalendarsAskedForAndIgnoresUnknownOnes)
{
    this->requestFullAccess();
    this->kind.add("Cloud/Work", "work", 30);
    this->kind.add("Cloud/Home", "home", 30);

    EXPECT_THAT(this->titles(kStart, kStart + 1, {"Cloud/Home", "Cloud/Gone"}), ElementsAre("home"));
    EXPECT_THAT(
        this->titles(kStart, kStart + 1, {"Cloud/Work", "Cloud/Home"}), UnorderedElementsAre("home", "work"));
    EXPECT_THAT(this->titles(kStart, kStart + 1, {}), IsEmpty());
}

TYPED_TEST(EventStoreContract, SeesWhatWasAddedBeforeTheQuery)
{
    this->requestFullAccess();
    EXPECT_THAT(this->titles(), IsEmpty());

    this->kind.add("Cloud/Work", "a", 30);

    EXPECT_THAT(this->titles(), ElementsAre("a"));
}

TYPED_TEST(EventStoreContract, ThrowsRatherThanBeingEmptyWhenItIsBroken)
{
    this->requestFullAccess();
    this->kind.add("Cloud/Work", "a", 30);
    ASSERT_THAT(this->titles(), ElementsAre("a"));

    this->kind.breakDown();

    EXPECT_ANY_THROW(this->calendars());
    EXPECT_ANY_THROW(this->titles());
}

TYPED_TEST(EventStoreContract, CallsItsObserversAfterAChangeUntilTheyLetGo)
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

TYPED_TEST(EventStoreContract, ResumesItsCallerOnTheCallersExecutor)
{
    const auto ask = [](EventStore& asked, std::thread::id& resumedOn) -> Task<> {
        co_await asked.requestFullAccess();
        co_await asked.calendars();
        resumedOn = std::this_thread::get_id();
    };

    std::thread::id resumedOn;
    this->loop.runInRealTime(ask(this->store, resumedOn));

    EXPECT_EQ(resumedOn, std::this_thread::get_id());
}

}
}
