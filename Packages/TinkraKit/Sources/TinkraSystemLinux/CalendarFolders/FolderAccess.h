#pragma once

#include "TinkraSystem/Defaults.h"
#include "TinkraSystem/EventStore.h"
#include "TinkraSystemLinux/CalendarFolders/FileSystem.h"

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace Tinkra::System {

/// Whether the user lets us read the folders. Only the grant is kept; the rest is judged at each question.
/// Safe to use from any thread.
class FolderAccess {
public:
    /// `key` names the place of the grant in `defaults`.
    FolderAccess(std::vector<std::string> roots, std::shared_ptr<Defaults> defaults, std::string key,
        std::shared_ptr<FileSystem> fileSystem);

    bool isGranted() const;
    CalendarAuthorization status() const;

    /// Grants access when a root can be reached; the first time, makes the first one if it is missing. True
    /// when granted.
    bool request();

private:
    bool isAnyRootReachable() const;

    std::vector<std::string> m_roots;
    std::shared_ptr<Defaults> m_defaults;
    std::string m_key;
    std::shared_ptr<FileSystem> m_fileSystem;
    std::atomic<bool> m_wasRequested{false};
};

}
