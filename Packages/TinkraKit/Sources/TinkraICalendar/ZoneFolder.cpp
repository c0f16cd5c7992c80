#include "TinkraICalendar/ZoneFolder.h"

#include "TinkraICalendar/ZoneFile.h"
#include "TinkraICalendar/ZoneNames.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

namespace Tinkra::ICalendar {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestFile = 1U << 20U;
constexpr std::string_view kFolder = "zoneinfo/";
const fs::path kMachineZone = "/etc/localtime";

fs::path zoneFolder()
{
    const char* folder = std::getenv("TZDIR");
    return folder && *folder != '\0' ? folder : "/usr/share/zoneinfo";
}

std::optional<std::string> readFile(const fs::path& path)
{
    std::error_code error;
    const auto size = fs::is_regular_file(path, error) ? fs::file_size(path, error) : 0;
    if (error || size == 0 || size > kLargestFile)
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    std::string bytes(size, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

ZonePtr loadFile(std::string name, const fs::path& path)
{
    const auto bytes = readFile(path);
    return bytes ? readZoneFile(std::move(name), *bytes) : nullptr;
}

/// The part of a path that names the zone: "Europe/Zurich" of "/usr/share/zoneinfo/Europe/Zurich".
std::string_view nameInPath(std::string_view path)
{
    const auto folder = path.rfind(kFolder);
    return folder == std::string_view::npos ? std::string_view() : path.substr(folder + kFolder.size());
}

/// A zone by the path of its file: through its name where it has one, so that it is made only once.
ZonePtr zoneAtPath(const fs::path& path)
{
    std::error_code error;
    const auto target = fs::is_symlink(path, error) ? fs::read_symlink(path, error) : path;
    if (const auto name = nameInPath(target.native()); !name.empty()) {
        if (auto zone = findZone(name))
            return zone;
    }
    return loadFile(path.string(), path);
}

/// What the variable TZ means: ":" is optional, then a path, a zone's name or a POSIX text.
ZonePtr zoneOfVariable(std::string_view value)
{
    if (value.starts_with(':'))
        value.remove_prefix(1);
    if (value.empty())
        return utcZone();
    if (value.starts_with('/'))
        return zoneAtPath(value);
    if (auto zone = findZone(value))
        return zone;
    return readPosixZone(std::string(value), value);
}

}

ZonePtr loadZoneFile(const std::string& name)
{
    // These two count leap seconds, or are not zones.
    if (!isPlainZoneName(name) || name.starts_with("right/") || name == "posixrules" || name == "localtime")
        return nullptr;
    return loadFile(name, zoneFolder() / name);
}

ZoneFolderState zoneFolderState()
{
    const auto folder = zoneFolder();
    std::error_code error;
    const auto changed = fs::last_write_time(folder, error);
    return {folder.string(), error ? fs::file_time_type() : changed};
}

ZonePtr knownViewerZone()
{
    if (const char* variable = std::getenv("TZ"))
        return zoneOfVariable(variable);
    return zoneAtPath(kMachineZone);
}

ZonePtr viewerZone()
{
    auto zone = knownViewerZone();
    return zone ? zone : utcZone();
}

}
