#pragma once

#include <filesystem>
#include <vector>

namespace Tinkra::System {

/// The base directories of the desktop (XDG Base Directory Specification 0.8), read from the environment at
/// each call. A value that is not an absolute path is ignored, as its text asks.

std::filesystem::path xdgConfigHome(); ///< $XDG_CONFIG_HOME, else ~/.config
std::filesystem::path xdgDataHome(); ///< $XDG_DATA_HOME, else ~/.local/share
std::filesystem::path xdgStateHome(); ///< $XDG_STATE_HOME, else ~/.local/state

/// Where the system keeps its defaults, most important first: $XDG_CONFIG_DIRS, else /etc/xdg.
std::vector<std::filesystem::path> xdgConfigDirectories();

/// $XDG_DATA_DIRS, else /usr/local/share and /usr/share.
std::vector<std::filesystem::path> xdgDataDirectories();

}
