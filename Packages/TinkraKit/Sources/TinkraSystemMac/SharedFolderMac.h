#pragma once

#include "TinkraSystem/SharedFolder.h"

#include <filesystem>

namespace Tinkra::System {

/// A folder below one that every user may write to: only one that is a folder, and of this user, is trusted.
class SharedFolderMac final : public SharedFolder {
public:
    explicit SharedFolderMac(std::filesystem::path folder = "/Users/Shared/CalendarMurkel");

    bool exists() override;
    bool create(std::uint32_t permissions) override;
    bool holds(std::string_view fileName) override;

    /// The file may be read by all.
    bool replace(std::string_view fileName, std::string_view bytes) override;

private:
    std::filesystem::path m_folder;
};

}
