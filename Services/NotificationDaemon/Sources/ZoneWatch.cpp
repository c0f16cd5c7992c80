#include "NotificationDaemon/ZoneWatch.h"

#include <array>
#include <filesystem>
#include <sys/inotify.h>
#include <unistd.h>

namespace Tinkra::NotificationDaemon {

ZoneWatch::ZoneWatch(const std::string& zoneFile)
    : m_descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    if (m_descriptor < 0 || zoneFile.empty())
        return;
    // The link is replaced when the user travels, what it points to when the rules are updated.
    std::error_code error;
    const std::filesystem::path link = zoneFile;
    const auto target = std::filesystem::canonical(link, error);
    for (const auto& folder : {link.parent_path(), target.parent_path()}) {
        if (!folder.empty())
            inotify_add_watch(
                m_descriptor, folder.c_str(), IN_CREATE | IN_MOVED_TO | IN_CLOSE_WRITE | IN_DELETE);
    }
}

ZoneWatch::~ZoneWatch()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

bool ZoneWatch::takeNotice()
{
    std::array<char, 4096> events{};
    bool any = false;
    while (read(m_descriptor, events.data(), events.size()) > 0)
        any = true;
    return any;
}

}
