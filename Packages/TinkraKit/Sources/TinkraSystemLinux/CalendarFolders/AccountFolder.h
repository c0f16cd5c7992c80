#pragma once

#include "TinkraSystemLinux/CalendarFolders/CalendarFolder.h"

#include <memory>
#include <string>
#include <vector>

namespace Tinkra::System {

/// The calendars of one account: a folder below a root. Used by one thread at a time.
class AccountFolder {
public:
    /// `identifier` is the account's part of its calendars' identifiers, without a slash at its end.
    AccountFolder(std::string name, std::string identifier);

    const std::string& name() const { return m_name; }
    const std::vector<std::unique_ptr<CalendarFolder>>& calendars() const { return m_calendars; }

    /// True while every change of the account's own entries is reported.
    bool isCovered() const { return m_isCovered; }

    /// Looks at the account whether or not a change was reported.
    void noteEverythingChanged() { m_listAgain = true; }

    /// Takes in what was reported, and lists the calendars anew when that is called for. `openSelf` opens the
    /// account's folder. Throws std::system_error when it is there and cannot be read.
    void refresh(FileSystem& fileSystem, FolderWatcher& watcher, const std::function<Descriptor()>& openSelf);

    /// The account's folder is gone, and all of its calendars with it.
    void noteMissing(FileTime now);

    /// Drops the missing calendars for which `isOver` holds.
    void dropMissing(const std::function<bool(const CalendarFolder&)>& isOver);

    /// Links and the like that are not followed, and calendars that cannot be opened.
    void appendNotices(const std::string& place, std::size_t limit, std::vector<std::string>& notices) const;

private:
    void takeChanges();
    void list(FileSystem& fileSystem, int folder);
    void nameCalendars();
    void describeCalendars(
        FileSystem& fileSystem, FolderWatcher& watcher, const std::function<Descriptor()>& openSelf);
    CalendarFolder& calendar(CalendarFolder::Kind kind, const std::string& entry);

    std::string m_name;
    std::string m_identifier;
    std::vector<std::unique_ptr<CalendarFolder>> m_calendars; ///< sorted by entry, folders first
    std::optional<FolderIdentity> m_identity;
    std::unique_ptr<FolderWatch> m_watch;
    bool m_isCovered = false;
    bool m_listAgain = true;
    std::vector<std::string> m_notices; ///< of the listing
    std::vector<std::string> m_unopened; ///< of calendars whose folders did not open when last tried
};

}
