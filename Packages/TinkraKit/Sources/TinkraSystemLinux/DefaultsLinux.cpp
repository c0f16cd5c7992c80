#include "TinkraSystemLinux/DefaultsLinux.h"

#include "TinkraSystemLinux/FileDescriptor.h"
#include "TinkraSystemLinux/ReplaceFile.h"
#include "TinkraSystemLinux/XdgDirectories.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace Tinkra::System {

namespace {

using std::filesystem::path;

// The rest of what a file system allows (255 bytes) is left for the name of the file on its way.
constexpr std::size_t maximumKeyLength = 200;

bool isFileName(std::string_view key)
{
    return !key.empty() && key != "." && key != ".." && key.size() <= maximumKeyLength
        && key.find('/') == std::string_view::npos && key.find('\0') == std::string_view::npos;
}

[[noreturn]] void fail(const std::string& what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

void require(bool succeeded, const std::string& what)
{
    if (!succeeded)
        fail(what);
}

void synchronizeDirectory(const path& directory)
{
    const FileDescriptor descriptor(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    require(static_cast<bool>(descriptor) && ::fsync(descriptor.get()) == 0, "write " + directory.string());
}

// A directory that was made but is not yet known to the disk would take the file with it.
void makeDirectories(const path& directory)
{
    if (directory.empty() || std::filesystem::is_directory(directory))
        return;
    makeDirectories(directory.parent_path());
    if (::mkdir(directory.c_str(), S_IRWXU) != 0) {
        require(errno == EEXIST && std::filesystem::is_directory(directory), "create " + directory.string());
        return;
    }
    require(::chmod(directory.c_str(), S_IRWXU) == 0, "create " + directory.string());
    synchronizeDirectory(directory.parent_path());
}

void replaceValue(const path& directory, std::string_view key, std::string_view bytes)
{
    makeDirectories(directory);
    const FileDescriptor folder(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    require(static_cast<bool>(folder), "open " + directory.string());
    replaceFile(folder.get(), directory, std::string(key), bytes, S_IRUSR | S_IWUSR);
}

void writeToStandardError(const std::string& line)
{
    std::fprintf(stderr, "%s\n", line.c_str());
}

}

DefaultsLinux::DefaultsLinux(path directory, Log log)
    : m_directory(std::move(directory))
    , m_log(log ? std::move(log) : writeToStandardError)
{
}

path DefaultsLinux::userDirectory()
{
    return xdgConfigHome() / "tinkra";
}

std::optional<std::string> DefaultsLinux::data(std::string_view key)
{
    if (!isFileName(key))
        return std::nullopt;
    return readRegularFile(m_directory / key, maximumSize);
}

void DefaultsLinux::setData(std::string_view key, std::string_view bytes)
{
    if (!isFileName(key)) {
        m_log("CalendarMurkel: a preference was not saved: its key is no file name");
        return;
    }
    if (bytes.size() > maximumSize) {
        m_log("CalendarMurkel: " + std::string(key) + " was not saved: " + std::to_string(bytes.size())
            + " bytes are too many");
        return;
    }
    try {
        replaceValue(m_directory, key, bytes);
    } catch (const std::system_error& error) {
        m_log("CalendarMurkel: " + std::string(key) + " was not saved: cannot " + error.what());
    }
}

}
