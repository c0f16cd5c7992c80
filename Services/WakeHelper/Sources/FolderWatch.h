#pragma once

#include "WakeHelper/Descriptor.h"

#include <filesystem>

namespace Tinkra::WakeHelper {

/// Tells of changes of a folder and of its users' folders (inotify(7)).
class FolderWatch {
public:
    explicit FolderWatch(std::filesystem::path folder);

    /// Watches the folders that are there now, too. False when the folder itself is not there.
    bool renew() const;

    /// Becomes readable after a change.
    int descriptor() const { return m_inotify.get(); }
    void acknowledge() const;

private:
    std::filesystem::path m_folder;
    Descriptor m_inotify;
};

}
