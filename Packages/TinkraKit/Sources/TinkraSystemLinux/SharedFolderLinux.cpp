#include "TinkraSystemLinux/SharedFolderLinux.h"

#include "TinkraSystemLinux/FileDescriptor.h"
#include "TinkraSystemLinux/ReplaceFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace Tinkra::System {

namespace {

using std::filesystem::path;

constexpr mode_t kFileMode = 0644;

/// The folder itself, never one that a link leads to. Throws what keeps it from being used.
FileDescriptor openFolder(const path& folder, uid_t owner)
{
    FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!opened)
        throw std::system_error(errno, std::generic_category(), "open " + folder.string());
    struct stat status = {};
    if (::fstat(opened.get(), &status) != 0)
        throw std::system_error(errno, std::generic_category(), "look at " + folder.string());
    if (status.st_uid != owner)
        throw std::runtime_error("use " + folder.string() + ": it belongs to another user");
    if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        throw std::runtime_error("use " + folder.string() + ": other users may write to it");
    return opened;
}

}

SharedFolderLinux::SharedFolderLinux(path folder, uid_t owner, Log log)
    : m_folder(std::move(folder))
    , m_owner(owner)
    , m_log(std::move(log))
{
}

SharedFolderLinux::SharedFolderLinux(Log log)
    : SharedFolderLinux(
        path("/var/lib/CalendarMurkel") / std::to_string(::geteuid()), ::geteuid(), std::move(log))
{
}

bool SharedFolderLinux::exists()
{
    struct stat status = {};
    return ::lstat(m_folder.c_str(), &status) == 0;
}

bool SharedFolderLinux::create(std::uint32_t permissions)
{
    try {
        std::filesystem::create_directories(m_folder.parent_path());
        if (::mkdir(m_folder.c_str(), S_IRWXU) != 0)
            throw std::system_error(errno, std::generic_category(), "create " + m_folder.string());
        // Whatever the umask says.
        const auto folder = openFolder(m_folder, m_owner);
        return ::fchmod(folder.get(), static_cast<mode_t>(permissions)) == 0;
    } catch (const std::exception& error) {
        return report(error.what());
    }
}

bool SharedFolderLinux::holds(std::string_view fileName)
{
    struct stat status = {};
    return ::lstat((m_folder / fileName).c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool SharedFolderLinux::replace(std::string_view fileName, std::string_view bytes)
{
    try {
        const auto folder = openFolder(m_folder, m_owner);
        replaceFile(folder.get(), m_folder, std::string(fileName), bytes, kFileMode);
        m_reported.clear();
        return true;
    } catch (const std::exception& error) {
        return report(error.what());
    }
}

/// Gives false, so that it ends an operation.
bool SharedFolderLinux::report(const std::string& trouble)
{
    if (std::exchange(m_reported, trouble) != trouble)
        m_log("CalendarMurkel: the wake helper is not told of alarms: cannot " + trouble);
    return false;
}

}
