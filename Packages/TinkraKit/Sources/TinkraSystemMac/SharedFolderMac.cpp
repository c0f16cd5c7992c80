#include "TinkraSystemMac/SharedFolderMac.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

namespace Tinkra::System {

namespace {

using std::filesystem::path;

class File {
public:
    explicit File(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

// Opened once and asked then, so that nobody can put another in its place between question and use.
bool isOurOwnFolder(const File& folder)
{
    struct stat status = {};
    return folder.get() >= 0 && ::fstat(folder.get(), &status) == 0 && S_ISDIR(status.st_mode)
        && status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

bool writeAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}

SharedFolderMac::SharedFolderMac(path folder)
    : m_folder(std::move(folder))
{
}

bool SharedFolderMac::exists()
{
    std::error_code ignored;
    return std::filesystem::exists(m_folder, ignored);
}

bool SharedFolderMac::create(std::uint32_t permissions)
{
    std::error_code error;
    std::filesystem::create_directories(m_folder.parent_path(), error);
    const auto mode = static_cast<mode_t>(permissions);
    // The mask of the process must not take anything away.
    return ::mkdir(m_folder.c_str(), mode) == 0 && ::chmod(m_folder.c_str(), mode) == 0;
}

bool SharedFolderMac::holds(std::string_view fileName)
{
    std::error_code ignored;
    return std::filesystem::exists(m_folder / fileName, ignored);
}

bool SharedFolderMac::replace(std::string_view fileName, std::string_view bytes)
{
    const File folder(::open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!isOurOwnFolder(folder))
        return false;

    const std::string name(fileName);
    const std::string temporary = "." + name + ".new";
    ::unlinkat(folder.get(), temporary.c_str(), 0); // what an earlier attempt has left
    const File file(::openat(folder.get(), temporary.c_str(),
        O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH));
    const bool isWritten = file.get() >= 0 && ::fchmod(file.get(), S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH) == 0
        && writeAll(file.get(), bytes) && ::fsync(file.get()) == 0
        && ::renameat(folder.get(), temporary.c_str(), folder.get(), name.c_str()) == 0;
    if (!isWritten)
        ::unlinkat(folder.get(), temporary.c_str(), 0);
    return isWritten;
}

}
