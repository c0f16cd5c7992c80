#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace Tinkra::System {

/// Makes a file of this name in the open folder, or replaces what has the name, a symbolic link too, so that
/// a reader, or the next start after a power cut, finds the old bytes or the new ones. `mode` is the file's
/// whatever the umask says. Throws `std::system_error`, whose text begins with a verb ("write /a/b: ...");
/// the old bytes are then in place, or, when the last step failed, the new ones.
void replaceFile(int folder, const std::filesystem::path& folderName, const std::string& name,
    std::string_view bytes, mode_t mode);

/// Writes the folder's entries to the disk. Throws as above.
void synchronizeFolder(int folder, const std::filesystem::path& folderName);

/// The bytes of a regular file of at most `limit` bytes, read without waiting; nothing for anything else.
std::optional<std::string> readRegularFile(const std::filesystem::path& file, std::size_t limit);

}
