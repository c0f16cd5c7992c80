#include "EventStoreContract.h"

#include "TinkraSystemLinux/FolderEventStore.h"
#include "TinkraTestSupport/FakeDefaults.h"
#include "TinkraTestSupport/FakeEventStore.h"
#include "TinkraTestSupport/TemporaryFolder.h"

#include <fstream>
#include <stdexcept>

namespace Tinkra::System {
namespace {

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
        events.push_back({.details = EventDetails{.eventIdentifier = calendar + "/" + uid,
                              .calendarItemIdentifier = calendar + "/" + uid,
                              .calendarIdentifier = calendar,
                              .title = uid},
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

using Kinds = testing::Types<InMemory, InFolders>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, EventStoreContract, Kinds);

}
}
