#pragma once

#include <cstdint>
#include <string_view>

namespace Tinkra::System {

/// The permissions that the shared folder is made with: rwxr-xr-x.
inline constexpr std::uint32_t kSharedFolderPermissions = 0755;

/// The folder, outside of the user's own, in which the application leaves word for the wake helper. On macOS
/// /Users/Shared/CalendarMurkel. Main thread only; no call throws.
class SharedFolder {
public:
    virtual ~SharedFolder() = default;

    virtual bool exists() = 0;

    /// Makes the folder, and those above it, with these permissions (kSharedFolderPermissions).
    virtual bool create(std::uint32_t permissions) = 0;

    virtual bool holds(std::string_view fileName) = 0;

    /// Replaces the whole content of a file: whoever reads it finds the old bytes or the new ones. Writes
    /// nothing, and gives false, when the folder may belong to somebody else.
    virtual bool replace(std::string_view fileName, std::string_view bytes) = 0;
};

}
