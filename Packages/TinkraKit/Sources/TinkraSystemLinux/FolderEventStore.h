#pragma once

#include "TinkraSystem/Defaults.h"
#include "TinkraSystem/EventStore.h"
#include "TinkraSystemLinux/FolderStoreStatus.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace Tinkra::System {

class FileSystem;

/// Where the calendars of this user lie: "$XDG_DATA_HOME/tinkra/calendars", then the folders that
/// TINKRA_CALENDARS lists, separated by ":". Absolute paths, each once.
std::vector<std::string> calendarRoots();

struct FolderStoreOptions {
    std::vector<std::string> roots = calendarRoots();
    std::chrono::milliseconds queryLimit{20'000};
    std::string grantKey = "tinkra.calendarAccess"; ///< where `Defaults` keeps the grant
};

/// Calendars in folders of .ics files. Below each root lies a folder for each account; in it a calendar is a
/// folder of .ics files (with `displayname` and `color` as vdirsyncer writes them) or a single .ics file.
///
/// Identifiers: "account/calendar" in the first root, with the root's path in front in others, a single file
/// without its ".ics"; for events the calendar's identifier, "/" and the UID. Links are not followed.
///
/// Access is granted by asking for it while a root can be reached; the first root is made if it is missing.
/// Without the grant everything is empty. After it, a root that cannot be reached, or a calendar that is
/// asked for and gone, is an error.
///
/// Files are read when events are asked for, and again when they change. Queries run on a thread of the
/// store's own; one that takes longer than its limit ends with an exception.
class FolderEventStore final : public EventStore {
public:
    explicit FolderEventStore(std::shared_ptr<Defaults> defaults, FolderStoreOptions options = {});

    /// With other files than the machine's, for tests.
    FolderEventStore(std::shared_ptr<Defaults> defaults, FolderStoreOptions options,
        std::shared_ptr<FileSystem> fileSystem);

    ~FolderEventStore() override;

    /// Full access after the grant, denied while it was asked for or granted and no root can be reached, else
    /// not determined. Answers within a second even when a root hangs, which then counts as out of reach.
    CalendarAuthorization authorizationStatus() override;
    Task<bool> requestFullAccess() override;
    Task<std::vector<StoredCalendar>> calendars() override;
    Task<std::vector<StoredEvent>> events(
        Instant from, Instant to, std::vector<std::string> calendarIdentifiers) override;
    Observation observeChanges(std::function<void()> changed) override;

    /// What a person who looks after the folders should know. Does not need the grant. May throw.
    Task<FolderStoreStatus> status();

    /// The same after reading every calendar, whether or not its events were asked for.
    Task<FolderStoreStatus> examine();

private:
    class State;

    std::shared_ptr<State> m_state;
};

}
