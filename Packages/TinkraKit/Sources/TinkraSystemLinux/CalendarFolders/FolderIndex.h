#pragma once

#include "TinkraSystem/EventStore.h"
#include "TinkraSystemLinux/CalendarFolders/RootFolder.h"
#include "TinkraSystemLinux/FolderStoreStatus.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Tinkra::System {

/// Every calendar below the roots, kept in memory and brought up to date before each answer. Blocks, and is
/// used by one thread at a time.
///
/// Throws `StoreInDoubt` or std::system_error, with a text that names the folder, when it cannot be sure of
/// its answer.
class FolderIndex {
public:
    /// `roots` are absolute paths, the user's own first.
    FolderIndex(const std::vector<std::string>& roots, std::shared_ptr<FileSystem> fileSystem,
        std::shared_ptr<FolderWatcher> watcher);

    std::vector<StoredCalendar> calendars();
    std::vector<StoredEvent> events(
        Instant from, Instant to, const std::vector<std::string>& calendarIdentifiers);
    FolderStoreStatus status();

    /// Reads every calendar, asked for or not, and works out its next 30 days; then as `status`.
    FolderStoreStatus examine();

    /// Watches the folders if no query has done so yet; true when that was new.
    bool beginWatching();

private:
    void refresh();
    std::vector<std::exception_ptr> refreshRoots();
    void refreshZones();
    void readContents();
    void readContents(RootFolder& root, AccountFolder& account, CalendarFolder& calendar);
    bool isGoneForGood(const CalendarFolder& calendar, FileTime now) const;
    bool isDuplicate(const RootFolder& root) const;

    template <typename Visit> void forEachCalendar(Visit visit);

    std::shared_ptr<FileSystem> m_fileSystem;
    std::shared_ptr<FolderWatcher> m_watcher;
    std::vector<std::unique_ptr<RootFolder>> m_roots;
    bool m_isWatching = false;
    std::uint64_t m_zones = 0; ///< the state of the machine's zone data that the contents were read with
    std::set<std::string> m_askedFor; ///< the calendars of the newest query for events
    std::vector<std::string> m_expansionNotices; ///< of the newest query for events
};

}
