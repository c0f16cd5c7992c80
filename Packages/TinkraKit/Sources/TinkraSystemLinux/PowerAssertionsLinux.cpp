#include "TinkraSystemLinux/PowerAssertionsLinux.h"

#include <sdbus-c++/sdbus-c++.h>

#include <chrono>
#include <exception>
#include <future>
#include <map>
#include <string>
#include <thread>
#include <utility>

namespace Tinkra::System {

namespace {

constexpr auto kLimit = std::chrono::seconds(1);

/// On a connection of its own, for one call every now and then: nothing to find again after it broke.
sdbus::UnixFd inhibitIdleness(const std::string& reason)
{
    const auto connection = sdbus::createSystemBusConnection();
    const auto manager = sdbus::createProxy(*connection, "org.freedesktop.login1", "/org/freedesktop/login1");
    sdbus::UnixFd lock;
    manager->callMethod("Inhibit")
        .onInterface("org.freedesktop.login1.Manager")
        .withTimeout(kLimit)
        .withArguments(std::string("idle"), std::string("Calendar Murkel"), reason, std::string("block"))
        .storeResultsTo(lock);
    return lock;
}

/// Connecting to a bus that does not answer takes half a minute: who waits does so for `kLimit`. A lock that
/// comes later is dropped.
std::optional<sdbus::UnixFd> inhibitIdlenessInTime(const std::string& reason)
{
    std::promise<sdbus::UnixFd> promise;
    auto lock = promise.get_future();
    std::thread([promise = std::move(promise), reason]() mutable {
        try {
            promise.set_value(inhibitIdleness(reason));
        } catch (...) {
            promise.set_exception(std::current_exception());
        }
    }).detach();
    if (lock.wait_for(kLimit) != std::future_status::ready)
        return std::nullopt;
    try {
        return lock.get();
    } catch (const sdbus::Error&) {
        return std::nullopt;
    }
}

}

struct PowerAssertionsLinux::Locks {
    std::map<PowerAssertionID, sdbus::UnixFd> byID;
    PowerAssertionID last = kNoPowerAssertion;
};

PowerAssertionsLinux::PowerAssertionsLinux()
    : m_locks(std::make_unique<Locks>())
{
}

PowerAssertionsLinux::~PowerAssertionsLinux() = default;

std::optional<PowerAssertionID> PowerAssertionsLinux::create(
    std::string_view type, std::uint32_t level, std::string_view name)
{
    if (type != kPreventUserIdleSystemSleep || level != kPowerAssertionLevelOn)
        return std::nullopt;
    auto lock = inhibitIdlenessInTime(std::string(name));
    if (!lock)
        return std::nullopt;
    m_locks->byID.emplace(++m_locks->last, std::move(*lock));
    return m_locks->last;
}

void PowerAssertionsLinux::release(PowerAssertionID assertion)
{
    m_locks->byID.erase(assertion);
}

}
