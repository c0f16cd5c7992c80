#include "TinkraSystemLinux/Sound/PulseConnection.h"

#include <algorithm>
#include <new>

namespace Tinkra::System {

namespace {

// A longer one would not fit into the library's argument.
constexpr std::chrono::microseconds kLongestTurn = std::chrono::minutes(10);

using Proplist = std::unique_ptr<pa_proplist, decltype(&pa_proplist_free)>;

Proplist description()
{
    Proplist properties(pa_proplist_new(), &pa_proplist_free);
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_NAME, "Calendar Murkel");
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ID, "co.calendarmurkel.Tinkra");
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ICON_NAME, "co.calendarmurkel.Tinkra");
    return properties;
}

}

PulseConnection::PulseConnection()
    : m_loop(pa_mainloop_new())
{
    if (!m_loop)
        throw std::bad_alloc();
    m_context.reset(
        pa_context_new_with_proplist(pa_mainloop_get_api(m_loop.get()), nullptr, description().get()));
    if (!m_context)
        throw std::bad_alloc();
    // What goes wrong here shows in the context's state.
    pa_context_connect(m_context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
}

PulseConnection::~PulseConnection()
{
    pa_context_disconnect(m_context.get());
}

bool PulseConnection::isReady() const
{
    return pa_context_get_state(m_context.get()) == PA_CONTEXT_READY;
}

bool PulseConnection::isOver() const
{
    return !PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context.get()));
}

bool PulseConnection::settle(Deadline deadline)
{
    while (!isReady() && !isOver()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        turn(deadline);
    }
    return true;
}

bool PulseConnection::finish(pa_operation* operation, Deadline deadline)
{
    if (operation == nullptr)
        return false;
    while (pa_operation_get_state(operation) == PA_OPERATION_RUNNING
        && std::chrono::steady_clock::now() < deadline)
        turn(deadline);
    const bool isDone = pa_operation_get_state(operation) == PA_OPERATION_DONE;
    if (!isDone)
        pa_operation_cancel(operation);
    pa_operation_unref(operation);
    return isDone;
}

void PulseConnection::turn(std::optional<Deadline> deadline)
{
    using std::chrono::microseconds;
    int limit = -1;
    if (deadline) {
        const auto left = std::chrono::ceil<microseconds>(*deadline - std::chrono::steady_clock::now());
        limit = static_cast<int>(std::clamp(left, microseconds(0), kLongestTurn).count());
    }
    if (pa_mainloop_prepare(m_loop.get(), limit) < 0)
        return;
    pa_mainloop_poll(m_loop.get());
    pa_mainloop_dispatch(m_loop.get());
}

void PulseConnection::wakeUp()
{
    pa_mainloop_wakeup(m_loop.get());
}

}
