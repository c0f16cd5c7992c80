#include "NotificationDaemon/StateDirectory.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tinkra::NotificationDaemon {

namespace {

constexpr int kLockAttempts = 20;
constexpr timespec kLockPause{0, 100000000};

std::string environment(const char* name)
{
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string homeDirectory()
{
    auto home = environment("HOME");
    if (!home.empty())
        return home;
    const auto* user = getpwuid(getuid());
    return user != nullptr ? user->pw_dir : "/";
}

/// The XDG base directory rules: a relative path is as good as none.
std::string stateHome()
{
    auto path = environment("XDG_STATE_HOME");
    return !path.empty() && path.front() == '/' ? path : homeDirectory() + "/.local/state";
}

std::string systemError()
{
    return std::strerror(errno);
}

}

StateDirectory::StateDirectory()
    : m_path(stateHome() + "/tinkra")
{
    make();
}

StateDirectory::~StateDirectory()
{
    if (m_lock >= 0)
        close(m_lock);
}

void StateDirectory::make()
{
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(m_path).parent_path(), error);
    if (mkdir(m_path.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        m_problem = m_path + " cannot be made: " + systemError();
        return;
    }
    const int directory = open(m_path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    struct stat status { };
    if (directory < 0 || fstat(directory, &status) != 0)
        m_problem = m_path + " is no directory: " + systemError();
    else if (status.st_uid != geteuid())
        m_problem = m_path + " belongs to another user";
    else if ((status.st_mode & 07777U) != S_IRWXU && fchmod(directory, S_IRWXU) != 0)
        m_problem = m_path + " cannot be made private: " + systemError();
    else if (faccessat(directory, ".", W_OK, AT_EACCESS) != 0)
        m_problem = m_path + " cannot be written: " + systemError();
    if (directory >= 0)
        close(directory);
}

bool StateDirectory::lock()
{
    if (!m_problem.empty())
        return true;
    m_lock = open(
        file("notifications.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (m_lock < 0) {
        m_problem = file("notifications.lock") + " cannot be opened: " + systemError();
        return true;
    }
    for (int attempt = 0; attempt < kLockAttempts; ++attempt) {
        if (flock(m_lock, LOCK_EX | LOCK_NB) == 0)
            return true;
        nanosleep(&kLockPause, nullptr);
    }
    return false;
}

}
