#include "TinkraSystemLinux/DefaultsLinux.h"

#include "TinkraSystemLinux/FileDescriptor.h"
#include "TinkraSystemLinux/XdgDirectories.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdint>
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

std::string unpredictableName(std::string_view key)
{
    std::uint64_t number = 0;
    require(
        ::getrandom(&number, sizeof number, 0) == static_cast<ssize_t>(sizeof number), "get a random number");
    return "." + std::string(key) + "." + std::to_string(number);
}

void writeAll(int file, std::string_view bytes, const std::string& name)
{
    while (!bytes.empty()) {
        const auto written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        require(written > 0, "write " + name);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

// The content must be on the disk before the name leads to it, and the name before we say that it is kept.
void replaceFile(const path& directory, std::string_view key, std::string_view bytes)
{
    makeDirectories(directory);
    const FileDescriptor folder(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    require(static_cast<bool>(folder), "open " + directory.string());

    const auto temporary = unpredictableName(key);
    FileDescriptor file(::openat(folder.get(), temporary.c_str(),
        O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    require(static_cast<bool>(file), "create " + (directory / temporary).string());
    try {
        require(::fchmod(file.get(), S_IRUSR | S_IWUSR) == 0, "protect " + (directory / temporary).string());
        writeAll(file.get(), bytes, (directory / temporary).string());
        require(::fsync(file.get()) == 0, "write " + (directory / temporary).string());
        require(::renameat(folder.get(), temporary.c_str(), folder.get(), std::string(key).c_str()) == 0,
            "replace " + (directory / key).string());
    } catch (...) {
        ::unlinkat(folder.get(), temporary.c_str(), 0);
        throw;
    }
    require(::fsync(folder.get()) == 0, "write " + directory.string());
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
    // Not to be held up by a pipe that nobody writes to.
    const FileDescriptor file(
        ::open((m_directory / key).c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;

    std::string bytes;
    std::array<char, 16384> block = {};
    while (bytes.size() <= maximumSize) {
        const auto count = ::read(file.get(), block.data(), block.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return bytes;
        bytes.append(block.data(), static_cast<std::size_t>(count));
    }
    return std::nullopt;
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
        replaceFile(m_directory, key, bytes);
    } catch (const std::system_error& error) {
        m_log("CalendarMurkel: " + std::string(key) + " was not saved: cannot " + error.what());
    }
}

}
