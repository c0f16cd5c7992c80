#include "NotificationDaemon/SystemZone.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <sys/stat.h>

namespace Tinkra::NotificationDaemon {

namespace {

std::string zoneFile()
{
    const char* zone = std::getenv("TZ");
    if (zone == nullptr)
        return "/etc/localtime";
    std::filesystem::path name = *zone == ':' ? zone + 1 : zone;
    if (name.empty())
        return {};
    if (name.is_absolute())
        return name;
    const char* folder = std::getenv("TZDIR");
    name = std::filesystem::path(folder != nullptr ? folder : "/usr/share/zoneinfo") / name;
    std::error_code error;
    return std::filesystem::exists(name, error) ? name.string() : std::string();
}

/// Changes when the file, or what its link points to, is another one or was written.
std::string stampOf(const std::string& file)
{
    struct stat status { };
    if (file.empty() || stat(file.c_str(), &status) != 0)
        return {};
    std::error_code error;
    return std::filesystem::canonical(file, error).string() + ' ' + std::to_string(status.st_dev) + ' '
        + std::to_string(status.st_ino) + ' ' + std::to_string(status.st_mtim.tv_sec) + '.'
        + std::to_string(status.st_mtim.tv_nsec) + ' ' + std::to_string(status.st_size);
}

/// The C library looks at the file again only when the value of TZ has changed: change it and back.
void readAgain()
{
    // The process has one thread, so that the environment may be touched.
    const char* zone = std::getenv("TZ");
    const std::string kept = zone != nullptr ? zone : "";
    setenv("TZ", "UTC0", 1);
    tzset();
    if (zone != nullptr)
        setenv("TZ", kept.c_str(), 1);
    else
        unsetenv("TZ");
    tzset();
}

}

SystemZone::SystemZone()
    : m_file(zoneFile())
    , m_stamp(stampOf(m_file))
{
    tzset();
}

std::int64_t SystemZone::utcOffset(std::int64_t instant) const
{
    const time_t time = instant;
    tm local{};
    return localtime_r(&time, &local) != nullptr ? local.tm_gmtoff : 0;
}

bool SystemZone::reload()
{
    auto stamp = stampOf(m_file);
    if (stamp == m_stamp)
        return false;
    m_stamp = std::move(stamp);
    readAgain();
    return true;
}

}
