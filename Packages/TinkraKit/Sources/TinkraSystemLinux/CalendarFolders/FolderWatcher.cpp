#include "TinkraSystemLinux/CalendarFolders/FolderWatcher.h"

#include <asio/post.hpp>
#include <sys/inotify.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace Tinkra::System {

namespace {

// Opening and reading are not asked for: our own queries cause no events.
constexpr std::uint32_t kEvents = IN_CREATE | IN_CLOSE_WRITE | IN_MODIFY | IN_ATTRIB | IN_MOVED_FROM
    | IN_MOVED_TO | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_EXCL_UNLINK;

// How long a burst of changes is left to gather before the queue is read.
constexpr std::chrono::milliseconds kGathering{100};

// A folder with more changed entries than this is listed anew instead.
constexpr std::size_t kNamesKept = 1'000;

std::string describe(int error)
{
    switch (error) {
    case ENOSPC:
        return "the limit of watched folders is reached (sysctl fs.inotify.max_user_watches)";
    case EMFILE:
        return "the limit of watching programs is reached (sysctl fs.inotify.max_user_instances)";
    default:
        return std::string{"folders cannot be watched: "} + std::strerror(error);
    }
}

}

FolderWatch::FolderWatch(std::shared_ptr<FolderWatcher> watcher, int descriptor, Filter filter)
    : m_watcher(std::move(watcher))
    , m_descriptor(descriptor)
    , m_filter(std::move(filter))
{
}

FolderWatch::~FolderWatch()
{
    m_watcher->forget(*this);
}

FolderChanges FolderWatch::take()
{
    const std::lock_guard lock{m_watcher->m_mutex};
    return std::exchange(m_changes, {});
}

FolderWatcher::FolderWatcher(std::shared_ptr<asio::io_context> context, std::function<void()> notify)
    : m_context(std::move(context))
    , m_notify(std::move(notify))
    , m_pauseTimer(*m_context)
    , m_noticeTimer(*m_context)
    , m_queue(*m_context)
{
    const int queue = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (queue < 0)
        m_trouble = describe(errno);
    else
        m_queue.assign(queue);
}

void FolderWatcher::start()
{
    asio::post(*m_context, [self = shared_from_this()] { self->listen(); });
}

void FolderWatcher::stop()
{
    m_pauseTimer.cancel();
    m_noticeTimer.cancel();
    const std::lock_guard lock{m_mutex};
    m_watches.clear();
    if (m_queue.is_open())
        m_queue.close();
}

std::unique_ptr<FolderWatch> FolderWatcher::watch(int folder, FolderWatch::Filter filter)
{
    const std::lock_guard lock{m_mutex};
    if (!m_queue.is_open())
        return nullptr;

    // By descriptor, so that what is watched is what was opened, whatever its name means by now.
    const auto path = "/proc/self/fd/" + std::to_string(folder);
    const int descriptor = inotify_add_watch(m_queue.native_handle(), path.c_str(), kEvents);
    if (descriptor < 0) {
        m_trouble = describe(errno);
        return nullptr;
    }
    auto watch = std::make_unique<FolderWatch>(shared_from_this(), descriptor, std::move(filter));
    m_watches[descriptor].push_back(watch.get());
    return watch;
}

void FolderWatcher::drain()
{
    if (readQueue())
        postSchedule(kGathering);
}

void FolderWatcher::notifyAfter(std::chrono::milliseconds delay)
{
    postSchedule(delay);
}

std::string FolderWatcher::trouble()
{
    const std::lock_guard lock{m_mutex};
    return m_trouble;
}

// Waits for the queue, lets a burst gather, reads it, and waits again: a flood costs ten readings a second.
void FolderWatcher::listen()
{
    if (!m_queue.is_open())
        return;
    m_queue.async_wait(
        asio::posix::descriptor_base::wait_read, [self = shared_from_this()](asio::error_code error) {
            if (error)
                return;
            self->m_pauseTimer.expires_after(kGathering);
            self->m_pauseTimer.async_wait([self](asio::error_code interrupted) {
                if (interrupted)
                    return;
                if (self->readQueue())
                    self->schedule({});
                self->listen();
            });
        });
}

void FolderWatcher::postSchedule(NoticeBundle::Clock::duration delay)
{
    // Held weakly: the context may be left for good by the time that a late query asks for this.
    asio::post(*m_context, [watcher = weak_from_this(), delay] {
        if (const auto self = watcher.lock())
            self->schedule(delay);
    });
}

void FolderWatcher::schedule(NoticeBundle::Clock::duration delay)
{
    const auto due = m_bundle.changed(NoticeBundle::Clock::now(), delay);
    if (!due)
        return;
    m_noticeTimer.expires_at(*due);
    m_noticeTimer.async_wait([self = shared_from_this()](asio::error_code interrupted) {
        if (!interrupted)
            self->giveNotice();
    });
}

void FolderWatcher::giveNotice()
{
    if (m_bundle.takeDue(NoticeBundle::Clock::now()))
        m_notify();
}

// True when anything that matters has changed.
bool FolderWatcher::readQueue()
{
    const std::lock_guard lock{m_mutex};
    if (!m_queue.is_open())
        return false;

    alignas(inotify_event) std::array<char, 16384> buffer{};
    bool matters = false;
    for (;;) {
        const auto length = read(m_queue.native_handle(), buffer.data(), buffer.size());
        if (length <= 0)
            return matters;
        for (std::size_t at = 0; at < static_cast<std::size_t>(length);) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
            matters |= dispatch(*event, event->len > 0 ? std::string_view{event->name} : std::string_view{});
            at += sizeof(inotify_event) + event->len;
        }
    }
}

bool FolderWatcher::dispatch(const inotify_event& event, std::string_view name)
{
    if ((event.mask & IN_Q_OVERFLOW) != 0)
        return dispatchToAll();

    const auto found = m_watches.find(event.wd);
    if (found == m_watches.end())
        return false;

    bool matters = false;
    const bool lost = (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED)) != 0;
    for (auto* watch : found->second) {
        auto& changes = watch->m_changes;
        if (lost) {
            changes.lost = true;
            matters = true;
        } else if (name.empty()) {
            // Rights or times of the folder itself.
            changes.unknown = true;
            matters = true;
        } else if (watch->m_filter(name)) {
            matters = true;
            if (changes.names.size() < kNamesKept)
                changes.names.emplace(name);
            else
                changes.unknown = true;
        }
    }
    if ((event.mask & IN_IGNORED) != 0)
        m_watches.erase(found);
    return matters;
}

bool FolderWatcher::dispatchToAll()
{
    for (auto& [descriptor, watches] : m_watches) {
        for (auto* watch : watches)
            watch->m_changes.unknown = true;
    }
    return true;
}

void FolderWatcher::forget(FolderWatch& watch)
{
    const std::lock_guard lock{m_mutex};
    const auto found = m_watches.find(watch.m_descriptor);
    if (found == m_watches.end())
        return;
    std::erase(found->second, &watch);
    if (!found->second.empty())
        return;
    m_watches.erase(found);
    inotify_rm_watch(m_queue.native_handle(), watch.m_descriptor);
}

}
