#include "TinkraSystemLinux/XdgDirectories.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace Tinkra::System {

namespace {

using std::filesystem::path;

path homeDirectory()
{
    const char* home = std::getenv("HOME");
    if (home != nullptr && path(home).is_absolute())
        return home;
    const auto* user = ::getpwuid(::getuid());
    return user != nullptr && user->pw_dir != nullptr ? path(user->pw_dir) : path("/");
}

path directoryNamedBy(const char* variable, const char* belowHome)
{
    const char* value = std::getenv(variable);
    if (value != nullptr && path(value).is_absolute())
        return value;
    return homeDirectory() / belowHome;
}

std::vector<path> directoriesNamedBy(const char* variable, std::string_view otherwise)
{
    const char* value = std::getenv(variable);
    std::string_view rest = value != nullptr && *value != '\0' ? std::string_view(value) : otherwise;
    std::vector<path> directories;
    while (!rest.empty()) {
        const auto end = rest.find(':');
        if (const path directory = rest.substr(0, end); directory.is_absolute())
            directories.push_back(directory);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    return directories;
}

}

path xdgConfigHome()
{
    return directoryNamedBy("XDG_CONFIG_HOME", ".config");
}

path xdgDataHome()
{
    return directoryNamedBy("XDG_DATA_HOME", ".local/share");
}

path xdgStateHome()
{
    return directoryNamedBy("XDG_STATE_HOME", ".local/state");
}

std::vector<path> xdgConfigDirectories()
{
    return directoriesNamedBy("XDG_CONFIG_DIRS", "/etc/xdg");
}

std::vector<path> xdgDataDirectories()
{
    return directoriesNamedBy("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
}

}
