#include "TinkraSystemLinux/ReplaceFile.h"

#include "TinkraSystemLinux/FileDescriptor.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <system_error>

namespace Tinkra::System {

namespace {

void require(bool succeeded, const std::string& what)
{
    if (!succeeded)
        throw std::system_error(errno, std::generic_category(), what);
}

std::string unpredictableName(const std::string& name)
{
    std::uint64_t number = 0;
    require(
        ::getrandom(&number, sizeof number, 0) == static_cast<ssize_t>(sizeof number), "get a random number");
    return "." + name + "." + std::to_string(number);
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

}

// The content must be on the disk before the name leads to it, and the name before we say that it is kept.
void replaceFile(int folder, const std::filesystem::path& folderName, const std::string& name,
    std::string_view bytes, mode_t mode)
{
    const auto temporary = unpredictableName(name);
    const auto temporaryPath = (folderName / temporary).string();
    const FileDescriptor file(::openat(
        folder, temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    require(static_cast<bool>(file), "create " + temporaryPath);
    try {
        require(::fchmod(file.get(), mode) == 0, "protect " + temporaryPath);
        writeAll(file.get(), bytes, temporaryPath);
        require(::fsync(file.get()) == 0, "write " + temporaryPath);
        require(::renameat(folder, temporary.c_str(), folder, name.c_str()) == 0,
            "replace " + (folderName / name).string());
    } catch (...) {
        ::unlinkat(folder, temporary.c_str(), 0);
        throw;
    }
    synchronizeFolder(folder, folderName);
}

void synchronizeFolder(int folder, const std::filesystem::path& folderName)
{
    require(::fsync(folder) == 0, "write " + folderName.string());
}

std::optional<std::string> readRegularFile(const std::filesystem::path& file, std::size_t limit)
{
    // Not to be held up by a pipe that nobody writes to.
    const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status = {};
    if (!opened || ::fstat(opened.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;

    std::string bytes;
    std::array<char, 16384> block = {};
    while (bytes.size() <= limit) {
        const auto count = ::read(opened.get(), block.data(), block.size());
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

}
