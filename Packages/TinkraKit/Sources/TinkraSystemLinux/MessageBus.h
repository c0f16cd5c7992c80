#pragma once

#include "TinkraConcurrency/Continuation.h"
#include "TinkraConcurrency/Task.h"

#include <asio/this_coro.hpp>
#include <sdbus-c++/sdbus-c++.h>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace Tinkra::System {

/// Where a D-Bus call goes.
struct BusMethod {
    std::string destination;
    std::string path;
    std::string interface;
    std::string name;
};

/// A connection to one message bus. It is made when it is first needed, on a thread of its own, and made anew
/// after it broke, so that no caller is ever held up by a bus that is missing or does not answer. The
/// executors of its callers must outlive it.
class MessageBus {
public:
    enum class Kind { Session, System };

    explicit MessageBus(Kind kind);
    MessageBus(const MessageBus&) = delete;
    MessageBus& operator=(const MessageBus&) = delete;
    ~MessageBus();

    /// Calls a method and waits for its answer. Throws `sdbus::Error`: the answer's, the connection's, or
    /// org.freedesktop.DBus.Error.NoReply after `limit`, which counts connecting and the start of a service
    /// too.
    template <typename Result = void, typename... Arguments>
    Task<Result> call(BusMethod method, std::chrono::milliseconds limit, Arguments... arguments)
    {
        const auto executor = co_await asio::this_coro::executor;
        auto write = [... arguments = std::move(arguments)](
                         sdbus::MethodCall& message) { (void)(message << ... << arguments); };
        co_return co_await suspend<Result>(
            [this, executor, method = std::move(method), limit, write = std::move(write)](auto continuation) {
                submit(executor, limit,
                    {
                        .method = method,
                        .write = write,
                        .answered = [continuation](
                                        sdbus::MethodReply& reply) { resume<Result>(continuation, reply); },
                        .failed = [continuation](
                                      std::exception_ptr error) { continuation.fail(std::move(error)); },
                    });
            });
    }

    /// Calls `received` for each signal that matches `rule` (D-Bus Specification, "Match Rules"), on the
    /// connection's thread, for as long as the bus object lives; a connection that is made anew keeps to it.
    /// Connects, when nobody has yet.
    void observe(std::string rule, std::function<void(sdbus::Message&)> received);

private:
    struct Observer {
        std::string rule;
        std::function<void(sdbus::Message&)> received;
    };
    struct Call {
        BusMethod method;
        std::function<void(sdbus::MethodCall&)> write;
        std::function<void(sdbus::MethodReply&)> answered; ///< may throw
        std::function<void(std::exception_ptr)> failed;
    };
    struct PendingCall;
    struct Session;

    template <typename Result>
    static void resume(const Continuation<Result>& continuation, sdbus::MethodReply& reply)
    {
        if constexpr (std::is_void_v<Result>) {
            continuation.resume();
        } else {
            Result result{};
            reply >> result;
            continuation.resume(std::move(result));
        }
    }

    void submit(const Executor& executor, std::chrono::milliseconds limit, Call call);
    void connectAnew(std::shared_ptr<PendingCall> first);

    Kind m_kind;
    std::mutex m_mutex; ///< guards what follows
    std::vector<Observer> m_observers;
    std::shared_ptr<Session> m_session;
    std::thread m_thread;
};

}
