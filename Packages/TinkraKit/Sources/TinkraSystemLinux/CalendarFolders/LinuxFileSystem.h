#pragma once

#include "TinkraSystemLinux/CalendarFolders/FileSystem.h"

namespace Tinkra::System {

/// The machine's own files.
class LinuxFileSystem final : public FileSystem {
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
};

}
