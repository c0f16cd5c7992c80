#pragma once

#include "TinkraSystem/Defaults.h"

#include <cstddef>
#include <filesystem>
#include <functional>

namespace Tinkra::System {

/// One file per key in one directory; the file's name is the key, its content the exact bytes.
///
/// Reading follows a symbolic link and takes regular files alone. Writing replaces the directory entry, so
/// that a reader, or the next start after a power cut, sees the old bytes or the new ones; a symbolic link is
/// replaced too and what it points to stays untouched. Directories are made with mode 0700, files with 0600.
class DefaultsLinux final : public Defaults {
public:
    /// No value is longer; a longer file counts as not being data.
    static constexpr std::size_t maximumSize = 1U << 20U;

    using Log = std::function<void(const std::string& line)>;

    /// Reads and writes nothing yet. `log` gets one line per failed write; the default writes to standard
    /// error.
    explicit DefaultsLinux(std::filesystem::path directory, Log log = {});

    std::optional<std::string> data(std::string_view key) override;
    void setData(std::string_view key, std::string_view bytes) override;

    /// Where this user's preferences are: `$XDG_CONFIG_HOME/tinkra`.
    static std::filesystem::path userDirectory();

private:
    std::filesystem::path m_directory;
    Log m_log;
};

}
