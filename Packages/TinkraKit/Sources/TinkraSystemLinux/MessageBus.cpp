#include "TinkraSystemLinux/MessageBus.h"

#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include <atomic>
#include <map>
#include <vector>

namespace Tinkra::System {

namespace {

constexpr auto noReply = "org.freedesktop.DBus.Error.NoReply";
constexpr auto disconnected = "org.freedesktop.DBus.Error.Disconnected";

std::exception_ptr busError(const char* name, const std::string& message)
{
    return std::make_exception_ptr(sdbus::Error(name, message));
}

}

/// A call on its way. Whatever becomes of it, its caller hears of it once. After that its caller's executor
/// may be gone, and is left alone.
struct MessageBus::PendingCall {
    PendingCall(const Executor& callersExecutor, std::chrono::milliseconds timeLimit, Call whatToCall)
        : executor(callersExecutor)
        , deadline(std::chrono::steady_clock::now() + timeLimit)
        , call(std::move(whatToCall))
        , isOver(std::make_shared<std::atomic_flag>())
    {
        // The wait owns the timer, so that it ends on the executor that it belongs to.
        const auto owned = std::make_shared<asio::steady_timer>(executor, timeLimit);
        timer = owned;
        owned->async_wait(
            [owned, failed = call.failed, timeLimit, isOver = isOver](const asio::error_code& error) {
                if (!error && !isOver->test_and_set())
                    failed(busError(
                        noReply, "There was no answer within " + std::to_string(timeLimit.count()) + " ms."));
            });
    }
    PendingCall(const PendingCall&) = delete;
    PendingCall& operator=(const PendingCall&) = delete;
    ~PendingCall() { fail(busError(disconnected, "The connection to the message bus was lost.")); }

    void fail(std::exception_ptr error)
    {
        if (end())
            call.failed(std::move(error));
    }

    void answer(sdbus::MethodReply& reply, const sdbus::Error* error)
    {
        if (error != nullptr) {
            fail(std::make_exception_ptr(*error));
        } else if (end()) {
            try {
                call.answered(reply);
            } catch (const sdbus::Error&) {
                call.failed(std::current_exception());
            }
        }
    }

    /// True for the first who asks.
    bool end()
    {
        if (isOver->test_and_set())
            return false;
        asio::post(executor, [timer = timer] {
            if (const auto waiting = timer.lock())
                waiting->cancel();
        });
        return true;
    }

    Executor executor;
    std::chrono::steady_clock::time_point deadline;
    Call call;
    std::weak_ptr<asio::steady_timer> timer;
    std::shared_ptr<std::atomic_flag> isOver;
};

/// One connection from its first call to its end, shared by the bus and the connection's own thread.
struct MessageBus::Session {
    enum class State { Connecting, Connected, Over };

    std::mutex mutex; ///< guards everything here
    State state = State::Connecting;
    bool isAbandoned = false; ///< the bus object is gone: leave as soon as possible
    std::unique_ptr<sdbus::IConnection> connection;
    std::map<std::pair<std::string, std::string>, std::unique_ptr<sdbus::IProxy>> proxies;
    std::vector<std::shared_ptr<PendingCall>> waiting; ///< for the connection
    std::vector<Observer> observers;

    static void run(const std::shared_ptr<Session>& session, Kind kind)
    {
        session->connect(kind);
        session->serve();
    }

    void connect(Kind kind)
    {
        std::unique_ptr<sdbus::IConnection> made;
        std::exception_ptr error;
        try {
            made = kind == Kind::Session ? sdbus::createSessionBusConnection()
                                         : sdbus::createSystemBusConnection();
        } catch (const sdbus::Error&) {
            error = std::current_exception();
        }

        std::vector<std::shared_ptr<PendingCall>> calls;
        {
            const std::lock_guard lock(mutex);
            connection = std::move(made);
            state = connection ? State::Connected : State::Over;
            calls.swap(waiting);
            if (connection) {
                for (const auto& observer : observers)
                    match(observer);
                for (const auto& call : calls)
                    send(call);
                return;
            }
        }
        for (const auto& call : calls)
            call->fail(error);
    }

    void serve()
    {
        {
            const std::lock_guard lock(mutex);
            if (state != State::Connected || isAbandoned)
                return;
        }
        try {
            connection->enterEventLoop();
        } catch (const sdbus::Error&) {
            // The bus has gone. Whoever waits is told below, and the next call connects anew.
        }
        // Calls without an answer end with their proxies, outside of the lock.
        decltype(proxies) ended;
        const std::lock_guard lock(mutex);
        state = State::Over;
        ended.swap(proxies);
    }

    // Called with the mutex held.
    void match(const Observer& observer)
    {
        try {
            connection->addMatch(observer.rule, observer.received, sdbus::floating_slot);
        } catch (const sdbus::Error&) {
            // The connection breaks; the next one is asked again.
        }
    }

    // Called with the mutex held.
    void send(const std::shared_ptr<PendingCall>& pending)
    {
        const auto& method = pending->call.method;
        const auto left = pending->deadline - std::chrono::steady_clock::now();
        if (left <= left.zero())
            return; // its caller has gone on
        try {
            auto& proxy = proxies[{method.destination, method.path}];
            if (!proxy)
                proxy = sdbus::createProxy(*connection, method.destination, method.path);
            auto message = proxy->createMethodCall(method.interface, method.name);
            pending->call.write(message);
            proxy->callMethod(
                message,
                [pending](
                    sdbus::MethodReply& reply, const sdbus::Error* error) { pending->answer(reply, error); },
                left);
        } catch (const sdbus::Error&) {
            pending->fail(std::current_exception());
        }
    }
};

MessageBus::MessageBus(Kind kind)
    : m_kind(kind)
{
}

MessageBus::~MessageBus()
{
    if (!m_session)
        return;
    bool isConnecting = false;
    std::vector<std::shared_ptr<PendingCall>> unsent;
    {
        const std::lock_guard lock(m_session->mutex);
        m_session->isAbandoned = true;
        unsent.swap(m_session->waiting);
        isConnecting = m_session->state == Session::State::Connecting;
        if (m_session->state == Session::State::Connected)
            m_session->connection->leaveEventLoop();
    }
    // A bus that accepts a connection and then says nothing holds the thread up for longer than anybody wants
    // to wait; the thread owns what it uses.
    if (isConnecting)
        m_thread.detach();
    else
        m_thread.join();
}

void MessageBus::submit(const Executor& executor, std::chrono::milliseconds limit, Call call)
{
    const auto pending = std::make_shared<PendingCall>(executor, limit, std::move(call));
    const std::lock_guard busLock(m_mutex);
    if (m_session) {
        const std::lock_guard lock(m_session->mutex);
        if (m_session->state == Session::State::Connected) {
            m_session->send(pending);
            return;
        }
        if (m_session->state == Session::State::Connecting) {
            m_session->waiting.push_back(pending);
            return;
        }
    }
    connectAnew(pending);
}

// Called with the bus's mutex held.
void MessageBus::connectAnew(std::shared_ptr<PendingCall> first)
{
    if (m_thread.joinable())
        m_thread.join();
    m_session = std::make_shared<Session>();
    if (first)
        m_session->waiting.push_back(std::move(first));
    m_session->observers = m_observers;
    m_thread = std::thread(&Session::run, m_session, m_kind);
}

void MessageBus::observe(std::string rule, std::function<void(sdbus::Message&)> received)
{
    const std::lock_guard busLock(m_mutex);
    m_observers.push_back({std::move(rule), std::move(received)});
    if (m_session) {
        const std::lock_guard lock(m_session->mutex);
        if (m_session->state != Session::State::Over) {
            m_session->observers.push_back(m_observers.back());
            if (m_session->state == Session::State::Connected)
                m_session->match(m_observers.back());
            return;
        }
    }
    connectAnew(nullptr);
}

}
