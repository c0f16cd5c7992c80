#pragma once

#include "TinkraSystem/EventStore.h"
#include "TinkraSystemLinux/CalendarFolders/FolderContents.h"
#include "TinkraSystemLinux/CalendarFolders/FolderWatcher.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Tinkra::System {

/// One calendar on disk: a folder of .ics files, or a single .ics file. Used by one thread at a time.
class CalendarFolder {
public:
    enum class Kind { Folder, SingleFile };

    /// `entry` is its name in the account's folder.
    CalendarFolder(Kind kind, std::string entry, StoredCalendar description);

    Kind kind() const { return m_kind; }
    const std::string& entry() const { return m_entry; }
    const std::string& identifier() const { return m_description.identifier; }
    const StoredCalendar& description() const { return m_description; }
    FolderContents& contents() { return m_contents; }
    const FolderContents& contents() const { return m_contents; }

    /// True while the kernel reports each change, so that what was read stays valid.
    bool isCovered() const { return m_isCovered; }
    void setCovered(bool covered) { m_isCovered = covered; }

    /// Takes in what was reported since the last call; true when there was anything.
    bool takeChanges();

    void noteDescriptionChanged() { m_descriptionIsStale = true; }

    /// Single files are watched through the account's folder, which passes the news on.
    void noteChanged(const std::string& name);
    void noteEverythingChanged();

    bool wantsDescription() const { return m_descriptionIsStale; }
    void setIdentifier(std::string identifier) { m_description.identifier = std::move(identifier); }

    /// Watches the open folder, if it is another one than before or is not watched, and reads the title and
    /// the colour when they may have changed.
    void refreshDescription(FileSystem& fileSystem, FolderWatcher& watcher, int folder);

    /// Reads what changed; throws as `FolderContents::refresh` does.
    void refreshContents(FileSystem& fileSystem, FolderWatcher& watcher, int folder);

    /// When it was first found missing from its account; nothing while it is there.
    std::optional<FileTime> missingSince;

private:
    void watch(FileSystem& fileSystem, FolderWatcher& watcher, int folder);

    Kind m_kind;
    std::string m_entry;
    StoredCalendar m_description;
    FolderContents m_contents;
    std::optional<FolderIdentity> m_identity;
    std::unique_ptr<FolderWatch> m_watch;
    bool m_isCovered = false;
    bool m_descriptionIsStale = true;
};

}
