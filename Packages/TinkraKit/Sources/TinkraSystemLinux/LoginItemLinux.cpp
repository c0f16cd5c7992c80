#include "TinkraSystemLinux/LoginItemLinux.h"

#include "TinkraSystemLinux/FileDescriptor.h"
#include "TinkraSystemLinux/ReplaceFile.h"
#include "TinkraSystemLinux/XdgDirectories.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <optional>
#include <sstream>
#include <system_error>
#include <utility>

namespace Tinkra::System {

namespace {

using std::filesystem::path;

constexpr std::size_t kMaximumEntrySize = 65536;

/// An argument of the key Exec: quoted, then escaped as every text of an entry is (Desktop Entry
/// Specification 1.5, "The Exec key").
std::string execArgument(const std::string& argument)
{
    std::string quoted = "\"";
    for (const char each : argument) {
        if (each == '%')
            quoted += "%%";
        else if (each == '\\')
            quoted += R"(\\\\)";
        else if (each == '"' || each == '`' || each == '$')
            (quoted += R"(\\)") += each;
        else
            quoted += each;
    }
    return quoted + '"';
}

std::string entryFor(const path& program)
{
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Calendar Murkel\n"
           "Comment=Rings when your meetings start\n"
           "Icon=co.calendarmurkel.Tinkra\n"
           "Exec="
        + execArgument(program.string())
        + "\n"
          "X-GNOME-Autostart-enabled=true\n";
}

/// The value of a key of the entry's main group.
std::optional<std::string> value(const std::string& entry, std::string_view key)
{
    std::istringstream lines(entry);
    bool isInGroup = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('['))
            isInGroup = line.starts_with("[Desktop Entry]");
        const auto equals = line.find('=');
        if (!isInGroup || equals == std::string::npos)
            continue;
        const auto end = line.find_last_not_of(" \t", equals == 0 ? 0 : equals - 1);
        if (std::string_view(line).substr(0, end + 1) != key)
            continue;
        const auto first = line.find_first_not_of(" \t", equals + 1);
        const auto last = line.find_last_not_of(" \t\r");
        return first == std::string::npos ? std::string() : line.substr(first, last + 1 - first);
    }
    return std::nullopt;
}

path thisProgram()
{
    return std::filesystem::read_symlink("/proc/self/exe");
}

}

LoginItemLinux::LoginItemLinux(path folder, path program)
    : m_folder(std::move(folder))
    , m_program(std::move(program))
{
}

LoginItemLinux::LoginItemLinux()
    : LoginItemLinux(xdgConfigHome() / "autostart", thisProgram())
{
}

ServiceStatus LoginItemLinux::status()
{
    const auto file = m_folder / fileName;
    struct stat link = {};
    if (::lstat(file.c_str(), &link) != 0)
        return ServiceStatus::NotRegistered;
    const auto entry = readRegularFile(file, kMaximumEntrySize);
    const bool isOff =
        !entry || value(*entry, "Hidden") == "true" || value(*entry, "X-GNOME-Autostart-enabled") == "false";
    return isOff ? ServiceStatus::RequiresApproval : ServiceStatus::Enabled;
}

void LoginItemLinux::registerItem()
{
    std::filesystem::create_directories(m_folder);
    const FileDescriptor folder(::open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder)
        throw std::system_error(errno, std::generic_category(), "open " + m_folder.string());
    replaceFile(folder.get(), m_folder, std::string(fileName), entryFor(m_program), 0644);
}

void LoginItemLinux::unregisterItem()
{
    const auto file = m_folder / fileName;
    if (::unlink(file.c_str()) != 0 && errno != ENOENT)
        throw std::system_error(errno, std::generic_category(), "remove " + file.string());
}

}
