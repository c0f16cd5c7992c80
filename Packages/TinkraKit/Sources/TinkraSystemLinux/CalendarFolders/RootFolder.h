#pragma once

#include "TinkraSystemLinux/CalendarFolders/AccountFolder.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Tinkra::System {

/// A folder of accounts, and the calendars below it. Used by one thread at a time.
class RootFolder {
public:
    /// `identifier` begins the identifiers of its calendars: empty for the user's own root.
    RootFolder(std::string path, std::string identifier);

    const std::string& path() const { return m_path; }
    const std::optional<FolderIdentity>& identity() const { return m_identity; }
    const std::vector<std::unique_ptr<AccountFolder>>& accounts() const { return m_accounts; }
    bool isCovered() const { return m_isCovered; }
    const std::vector<std::string>& notices() const { return m_notices; }

    /// Takes in what was reported and lists what may have changed. Throws `StoreInDoubt` when the root is
    /// gone or stands empty where it did not, std::system_error when it cannot be read.
    void refresh(FileSystem& fileSystem, FolderWatcher& watcher);

    /// Opens the folder that holds the calendar's files; throws as `refresh` does.
    Descriptor openFolderOf(
        FileSystem& fileSystem, const AccountFolder& account, const CalendarFolder& calendar) const;

private:
    void takeChanges();
    void list(FileSystem& fileSystem, FolderWatcher& watcher, FolderIdentity identity);
    void watchForReturn(FileSystem& fileSystem, FolderWatcher& watcher);
    AccountFolder& account(const std::string& name);
    bool hasCalendars() const;

    std::string m_path;
    std::string m_identifier;
    std::vector<std::unique_ptr<AccountFolder>> m_accounts; ///< sorted by name
    std::optional<FolderIdentity> m_identity; ///< of the folder that was listed last
    std::unique_ptr<FolderWatch> m_watch;
    std::unique_ptr<FolderWatch> m_parentWatch; ///< while the root is missing
    bool m_isCovered = false;
    bool m_listAgain = true;
    std::vector<std::string> m_notices;
};

}
