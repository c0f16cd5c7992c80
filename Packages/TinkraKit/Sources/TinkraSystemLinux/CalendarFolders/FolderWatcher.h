#pragma once

#include "TinkraSystemLinux/CalendarFolders/Descriptor.h"
#include "TinkraSystemLinux/CalendarFolders/NoticeBundle.h"

#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>
#include <asio/steady_timer.hpp>

#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct inotify_event;

namespace Tinkra::System {

/// What happened in a watched folder since it was last asked.
struct FolderChanges {
    bool lost = false; ///< the folder itself was moved, deleted or unmounted: it is not watched any more
    bool unknown = false; ///< more than could be kept: list the folder again
    std::set<std::string> names; ///< entries that appeared, changed or went

    bool isEmpty() const { return !lost && !unknown && names.empty(); }
};

class FolderWatcher;

/// One folder is watched for as long as this lives.
class FolderWatch {
public:
    /// Which entries matter.
    using Filter = std::function<bool(std::string_view name)>;

    FolderWatch(std::shared_ptr<FolderWatcher> watcher, int descriptor, Filter filter);
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;
    ~FolderWatch();

    /// What is known so far; ask `FolderWatcher::drain` first to know all of it.
    FolderChanges take();

private:
    friend class FolderWatcher;

    std::shared_ptr<FolderWatcher> m_watcher;
    int m_descriptor;
    Filter m_filter;
    FolderChanges m_changes;
};

/// Watches folders through inotify(7) and gives at most one notice a second. Nothing is woken while nothing
/// changes. Safe to use from any thread; the notice is given by whoever runs the context.
class FolderWatcher : public std::enable_shared_from_this<FolderWatcher> {
public:
    FolderWatcher(std::shared_ptr<asio::io_context> context, std::function<void()> notify);

    /// Begins to listen, once, on the context.
    void start();

    /// Ends all that was begun on the context. Call it there, before the context is left.
    void stop();

    /// Nothing when the kernel does not let us watch (see `trouble`).
    std::unique_ptr<FolderWatch> watch(int folder, FolderWatch::Filter filter);

    /// Hands out what the kernel has queued up to now. Opens nothing.
    void drain();

    /// Gives a notice after `delay`, without a change.
    void notifyAfter(std::chrono::milliseconds delay);

    /// Why not every folder is watched; empty while nothing went wrong.
    std::string trouble();

private:
    friend class FolderWatch;

    void listen();
    void postSchedule(NoticeBundle::Clock::duration delay);
    void schedule(NoticeBundle::Clock::duration delay);
    void giveNotice();
    bool readQueue();
    bool dispatch(const inotify_event& event, std::string_view name);
    bool dispatchToAll();
    void forget(FolderWatch& watch);

    std::shared_ptr<asio::io_context> m_context;
    std::function<void()> m_notify;
    NoticeBundle m_bundle; ///< of the context's thread, as are the timers
    asio::steady_timer m_pauseTimer;
    asio::steady_timer m_noticeTimer;

    std::mutex m_mutex; ///< guards what follows, and the reading of the queue
    asio::posix::stream_descriptor m_queue;
    std::unordered_map<int, std::vector<FolderWatch*>> m_watches; ///< one folder may be watched twice
    std::string m_trouble;
};

}
