#include "WakeHelper/FolderWatch.h"

#include "WakeHelper/WakeFolder.h"

#include <sys/inotify.h>

#include <array>
#include <utility>

namespace Tinkra::WakeHelper {

namespace {

constexpr auto kChanges =
    IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_ATTRIB | IN_DELETE_SELF;

}

FolderWatch::FolderWatch(std::filesystem::path folder)
    : m_folder(std::move(folder))
    , m_inotify(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
{
}

bool FolderWatch::renew() const
{
    constexpr auto mask = static_cast<std::uint32_t>(kChanges | IN_ONLYDIR | IN_DONT_FOLLOW);
    if (::inotify_add_watch(m_inotify.get(), m_folder.c_str(), mask) < 0)
        return false;
    for (const auto& user : users(m_folder))
        ::inotify_add_watch(m_inotify.get(), (m_folder / user).c_str(), mask);
    return true;
}

void FolderWatch::acknowledge() const
{
    std::array<char, 65536> events{};
    while (::read(m_inotify.get(), events.data(), events.size()) > 0) { }
}

}
