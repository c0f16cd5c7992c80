#include "TinkraSystemLinux/FolderEventStore.h"

#include "TinkraSystemLinux/CalendarFolders/ChangeObservers.h"
#include "TinkraSystemLinux/CalendarFolders/FolderAccess.h"
#include "TinkraSystemLinux/CalendarFolders/FolderIndex.h"
#include "TinkraSystemLinux/CalendarFolders/LinuxFileSystem.h"
#include "TinkraSystemLinux/CalendarFolders/PendingQuery.h"
#include "TinkraSystemLinux/CalendarFolders/QueryThread.h"

#include <asio/executor_work_guard.hpp>

#include <algorithm>
#include <future>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace Tinkra::System {

namespace {

// How long closing the store waits for a query that hangs.
constexpr std::chrono::milliseconds kPatienceAtTheEnd{2000};

// How long a question for the access may take.
constexpr std::chrono::milliseconds kPatienceForStatus{1000};

}

/// Three threads: one waits (for changes, and for queries that take too long), one reads files, one looks
/// whether the roots are there. Jobs hold the parts that they use and never the whole, which they may
/// outlive.
class FolderEventStore::State {
public:
    State(std::shared_ptr<Defaults> defaults, FolderStoreOptions options,
        std::shared_ptr<FileSystem> fileSystem)
        : m_queryLimit(options.queryLimit)
        , m_access(std::make_shared<FolderAccess>(
              options.roots, std::move(defaults), std::move(options.grantKey), fileSystem))
        , m_context(std::make_shared<asio::io_context>(1))
        , m_watcher(std::make_shared<FolderWatcher>(m_context, [this] { m_observers.notify(); }))
        , m_index(std::make_shared<FolderIndex>(options.roots, std::move(fileSystem), m_watcher))
        , m_stayAlive(m_context->get_executor())
        , m_waiting([context = m_context] { context->run(); })
    {
        m_reading.emplace(std::min(m_queryLimit, kPatienceAtTheEnd));
        m_watcher->start();
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    ~State()
    {
        m_reading.reset();
        for (const auto& pending : m_pending) {
            if (const auto query = pending.lock())
                query->fail(EndableQuery::closed());
        }
        m_context->stop();
        m_waiting.join();
        // What was begun is ended here, so that nothing in the context keeps the watcher alive. A handler
        // that was still waiting for its turn may begin something anew, so once is not enough.
        do {
            m_watcher->stop();
            m_context->restart();
        } while (m_context->poll() > 0);
    }

    const std::shared_ptr<FolderAccess>& access() const { return m_access; }

    // Looked at by a thread of its own: the reading one may be long over a query, and the caller's must not
    // hang with a network file system that is away. Roots that do not answer count as out of reach.
    CalendarAuthorization accessStatus()
    {
        const auto answer = std::make_shared<std::promise<CalendarAuthorization>>();
        auto status = answer->get_future();
        m_looking.post([access = m_access, answer] {
            try {
                answer->set_value(access->status());
            } catch (...) {
                answer->set_exception(std::current_exception());
            }
        });
        if (status.wait_for(std::min(m_queryLimit, kPatienceForStatus)) != std::future_status::ready)
            return CalendarAuthorization::Denied;
        return status.get();
    }
    ChangeObservers& observers() { return m_observers; }

    // Sees to it that changes are reported even before the first query. What happened until then went unseen,
    // so a notice is given.
    void beginWatching()
    {
        m_reading->post([access = m_access, index = m_index, watcher = m_watcher] {
            if (access->isGranted() && index->beginWatching())
                watcher->notifyAfter({});
        });
    }

    // Runs `work` on the reading thread; the task that waits for it resumes where it was, in the end with an
    // exception if the work takes too long. The work itself goes on.
    template <typename Result> Task<Result> ask(std::function<Result(FolderIndex&)> work)
    {
        return suspend<Result>([this, work = std::move(work)](Continuation<Result> continuation) {
            begin(work, std::make_shared<PendingQuery<Result>>(std::move(continuation)));
        });
    }

private:
    template <typename Result>
    void begin(std::function<Result(FolderIndex&)> work, std::shared_ptr<PendingQuery<Result>> query)
    {
        remember(query);
        const auto limit = std::make_shared<asio::steady_timer>(*m_context, m_queryLimit);
        limit->async_wait([limit, pending = std::weak_ptr{query}](asio::error_code interrupted) {
            const auto late = pending.lock();
            if (!interrupted && late)
                late->fail(std::make_exception_ptr(StoreInDoubt("the calendar folders do not answer")));
        });
        m_reading->post([context = m_context, limit, index = m_index, work = std::move(work), query] {
            if (query->isAnswered())
                return;
            try {
                query->answer(work(*index));
            } catch (...) {
                query->fail(std::current_exception());
            }
            asio::post(*context, [limit] { limit->cancel(); });
        });
    }

    void remember(const std::shared_ptr<EndableQuery>& query)
    {
        const std::lock_guard lock{m_mutex};
        std::erase_if(m_pending, [](const auto& pending) { return pending.expired(); });
        m_pending.push_back(query);
    }

    std::chrono::milliseconds m_queryLimit;
    std::shared_ptr<FolderAccess> m_access;
    ChangeObservers m_observers;
    std::shared_ptr<asio::io_context> m_context;
    std::shared_ptr<FolderWatcher> m_watcher;
    std::shared_ptr<FolderIndex> m_index; ///< of the reading thread alone
    asio::executor_work_guard<asio::io_context::executor_type> m_stayAlive;
    std::thread m_waiting;
    std::mutex m_mutex;
    std::vector<std::weak_ptr<EndableQuery>> m_pending; ///< queries that have no answer yet
    std::optional<QueryThread> m_reading;
    QueryThread m_looking{std::chrono::milliseconds{0}};
};

FolderEventStore::FolderEventStore(std::shared_ptr<Defaults> defaults, FolderStoreOptions options)
    : FolderEventStore(std::move(defaults), std::move(options), std::make_shared<LinuxFileSystem>())
{
}

FolderEventStore::FolderEventStore(
    std::shared_ptr<Defaults> defaults, FolderStoreOptions options, std::shared_ptr<FileSystem> fileSystem)
    : m_state(std::make_shared<State>(std::move(defaults), std::move(options), std::move(fileSystem)))
{
}

FolderEventStore::~FolderEventStore() = default;

CalendarAuthorization FolderEventStore::authorizationStatus()
{
    return m_state->accessStatus();
}

Task<bool> FolderEventStore::requestFullAccess()
{
    const bool granted =
        co_await m_state->ask<bool>([access = m_state->access()](FolderIndex&) { return access->request(); });
    m_state->beginWatching();
    co_return granted;
}

Task<std::vector<StoredCalendar>> FolderEventStore::calendars()
{
    return m_state->ask<std::vector<StoredCalendar>>([access = m_state->access()](FolderIndex& index) {
        return access->isGranted() ? index.calendars() : std::vector<StoredCalendar>{};
    });
}

Task<std::vector<StoredEvent>> FolderEventStore::events(
    Instant from, Instant to, std::vector<std::string> calendarIdentifiers)
{
    return m_state->ask<std::vector<StoredEvent>>(
        [access = m_state->access(), from, to, identifiers = std::move(calendarIdentifiers)](
            FolderIndex& index) {
            return access->isGranted() ? index.events(from, to, identifiers) : std::vector<StoredEvent>{};
        });
}

Observation FolderEventStore::observeChanges(std::function<void()> changed)
{
    auto observation = m_state->observers().add(std::move(changed));
    m_state->beginWatching();
    return observation;
}

Task<FolderStoreStatus> FolderEventStore::status()
{
    return m_state->ask<FolderStoreStatus>([](FolderIndex& index) { return index.status(); });
}

Task<FolderStoreStatus> FolderEventStore::examine()
{
    return m_state->ask<FolderStoreStatus>([](FolderIndex& index) { return index.examine(); });
}

}
