#pragma once

#include "TinkraSystemLinux/CalendarFolders/LinuxFileSystem.h"

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace Tinkra::System {

/// The machine's files, with a clock of its own that runs ahead of theirs, so that a file just written counts
/// as left alone. Pauses end at once and move that clock. Counts what is opened; can stand in for trouble.
class TestFileSystem final : public FileSystem {
public:
    FileTime now() override;
    void pause(std::chrono::milliseconds duration) override;
    Descriptor openFolder(int parent, const std::string& name, Links links) override;
    std::optional<FolderIdentity> identityOf(const std::string& path) override;
    FolderIdentity identityOf(int folder) override;
    void forEachEntry(int folder, const std::function<void(const char* name, EntryKind kind)>& sink) override;
    std::optional<FileStamp> stampOf(int folder, const char* name) override;
    FileReading readFile(int folder, const char* name, std::size_t limit, Buffer& buffer) override;
    void makeFolder(const std::string& path) override;
    bool reportsChanges(int folder) override;

    void advance(FileTime duration);
    /// How far the clock runs ahead of the machine's: 10 s at the beginning.
    void setLead(FileTime lead);

    /// The names of files that were read and of folders that were opened or listed ("."), and forgets them.
    std::vector<std::string> takeOpened();
    int pauses() const;

    std::function<void()> duringPause;
    std::function<void(const std::string& name)> beforeReading;
    /// Gives what reading this file ends with instead; nothing to read it.
    std::function<std::optional<FileReading>(const std::string& name)> insteadOfReading;
    std::function<bool(const std::string& name)> failsToOpen;
    bool changesAreReported = true;

private:
    void note(const std::string& name);

    LinuxFileSystem m_files;
    mutable std::mutex m_mutex;
    FileTime m_lead = std::chrono::seconds{10};
    std::vector<std::string> m_opened;
    int m_pauses = 0;
};

}
