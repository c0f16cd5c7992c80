#include "TinkraSystemLinux/CalendarFolders/LinuxFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <limits>
#include <memory>
#include <system_error>
#include <thread>

namespace Tinkra::System {

namespace {

constexpr std::array<std::uint32_t, 8> kRemoteFileSystems{NFS_SUPER_MAGIC, SMB_SUPER_MAGIC, SMB2_SUPER_MAGIC,
    CIFS_SUPER_MAGIC, FUSE_SUPER_MAGIC, V9FS_MAGIC, CODA_SUPER_MAGIC, CEPH_SUPER_MAGIC};

/// Where an open folder lies, as far as the kernel tells.
std::string pathOf(int folder)
{
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(folder), unknown).string();
}

/// `doing` something with the folder, or with an entry of it, did not work: see `errno`.
[[noreturn]] void fail(const std::string& doing, int folder, const std::string& entry = {})
{
    const int error = errno;
    const auto place = folder == AT_FDCWD ? std::filesystem::path() : std::filesystem::path(pathOf(folder));
    const auto path = entry.empty() ? place : place / entry;
    throw std::system_error(error, std::generic_category(), doing + " \"" + path.string() + "\"");
}

FileTime fileTime(const timespec& time)
{
    return std::chrono::seconds{time.tv_sec} + std::chrono::nanoseconds{time.tv_nsec};
}

FileStamp stampFrom(const struct stat& status)
{
    constexpr auto kLargest = std::numeric_limits<std::uint32_t>::max();
    return {
        .modified = fileTime(status.st_mtim),
        .changed = fileTime(status.st_ctim),
        .inode = status.st_ino,
        .size = static_cast<std::uint32_t>(std::min<std::int64_t>(status.st_size, kLargest)),
    };
}

FolderIdentity identityFrom(const struct stat& status)
{
    return {.device = status.st_dev, .inode = status.st_ino};
}

EntryKind kindFrom(mode_t mode)
{
    if (S_ISREG(mode))
        return EntryKind::File;
    if (S_ISDIR(mode))
        return EntryKind::Folder;
    return S_ISLNK(mode) ? EntryKind::Link : EntryKind::Other;
}

EntryKind kindOf(int folder, const dirent& entry)
{
    switch (entry.d_type) {
    case DT_REG:
        return EntryKind::File;
    case DT_DIR:
        return EntryKind::Folder;
    case DT_LNK:
        return EntryKind::Link;
    case DT_UNKNOWN: {
        // Some file systems do not tell the type in the listing.
        struct stat status { };
        return fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 ? kindFrom(status.st_mode)
                                                                                : EntryKind::Other;
    }
    default:
        return EntryKind::Other;
    }
}

FileReading::Outcome outcomeOfOpenError(int error)
{
    switch (error) {
    case ENOENT:
        return FileReading::Outcome::Missing;
    case ELOOP: // a link, because of O_NOFOLLOW
    case ENXIO: // a socket, or a device that is not there
    case ENODEV:
        return FileReading::Outcome::NotAFile;
    case EACCES:
    case EPERM:
        return FileReading::Outcome::Forbidden;
    default:
        return FileReading::Outcome::Failed;
    }
}

}

FileTime LinuxFileSystem::now()
{
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return fileTime(time);
}

void LinuxFileSystem::pause(std::chrono::milliseconds duration)
{
    std::this_thread::sleep_for(duration);
}

Descriptor LinuxFileSystem::openFolder(int parent, const std::string& name, Links links)
{
    const int refuse = links == Links::Refused ? O_NOFOLLOW : 0;
    Descriptor folder{openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | refuse)};
    if (!folder && errno != ENOENT && errno != ENOTDIR && errno != ELOOP)
        fail("cannot open the folder", parent, name);
    return folder;
}

std::optional<FolderIdentity> LinuxFileSystem::identityOf(const std::string& path)
{
    struct stat status { };
    if (stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return identityFrom(status);
}

FolderIdentity LinuxFileSystem::identityOf(int folder)
{
    struct stat status { };
    if (fstat(folder, &status) != 0)
        fail("cannot look at the folder", folder);
    return identityFrom(status);
}

void LinuxFileSystem::forEachEntry(
    int folder, const std::function<void(const char* name, EntryKind kind)>& sink)
{
    // A listing of its own: the caller's descriptor keeps its place and its owner.
    Descriptor copy{openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    const std::unique_ptr<DIR, int (*)(DIR*)> listing{copy ? fdopendir(copy.get()) : nullptr, closedir};
    if (!listing)
        fail("cannot list the folder", folder);
    copy.release();

    for (;;) {
        errno = 0;
        const dirent* entry = readdir(listing.get());
        if (!entry) {
            if (errno != 0)
                fail("cannot list to its end the folder", folder);
            return;
        }
        if (entry->d_name[0] != '.')
            sink(entry->d_name, kindOf(folder, *entry));
    }
}

std::optional<FileStamp> LinuxFileSystem::stampOf(int folder, const char* name)
{
    struct stat status { };
    if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return stampFrom(status);
}

FileReading LinuxFileSystem::readFile(int folder, const char* name, std::size_t limit, Buffer& buffer)
{
    using Outcome = FileReading::Outcome;

    const Descriptor file{openat(folder, name, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY)};
    if (!file)
        return {.outcome = outcomeOfOpenError(errno), .error = errno};

    struct stat before { };
    if (fstat(file.get(), &before) != 0)
        return {.outcome = Outcome::Failed, .error = errno};
    const auto stamp = stampFrom(before);
    if (!S_ISREG(before.st_mode))
        return {.outcome = Outcome::NotAFile, .stamp = stamp};
    const auto size = static_cast<std::size_t>(before.st_size);
    if (size > limit)
        return {.outcome = Outcome::TooLarge, .stamp = stamp};
    if (buffer.size() < size)
        buffer.resize(size + size / 2);

    std::size_t length = 0;
    while (length < size) {
        const auto count = read(file.get(), buffer.data() + length, size - length);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return {.outcome = Outcome::Failed, .stamp = stamp, .error = errno};
        if (count == 0)
            break;
        length += static_cast<std::size_t>(count);
    }

    struct stat after { };
    if (fstat(file.get(), &after) != 0)
        return {.outcome = Outcome::Failed, .stamp = stamp, .error = errno};
    const bool steady = length == size && stampFrom(after) == stamp;
    return {
        .outcome = steady ? Outcome::Read : Outcome::ChangedMeanwhile,
        .stamp = stamp,
        .text = {buffer.data(), length},
    };
}

void LinuxFileSystem::makeFolder(const std::string& path)
{
    for (auto end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        mkdir(path.substr(0, end).c_str(), 0700);
    mkdir(path.c_str(), 0700);
}

bool LinuxFileSystem::reportsChanges(int folder)
{
    struct statfs status { };
    if (fstatfs(folder, &status) != 0)
        return false;
    const auto type = static_cast<std::uint32_t>(status.f_type);
    return std::find(kRemoteFileSystems.begin(), kRemoteFileSystems.end(), type) == kRemoteFileSystems.end();
}

}
