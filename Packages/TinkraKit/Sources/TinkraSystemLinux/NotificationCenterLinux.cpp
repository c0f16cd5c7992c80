#include "TinkraSystemLinux/NotificationCenterLinux.h"

#include "NotificationDaemonProtocol/Names.h"
#include "NotificationDaemonProtocol/RequestMessage.h"
#include "TinkraSystem/NotificationCenterDelegate.h"
#include "TinkraSystemLinux/MessageBus.h"
#include "TinkraSystemLinux/ValidUtf8.h"

#include <asio/co_spawn.hpp>
#include <asio/detached.hpp>

#include <cstdio>
#include <utility>

namespace Tinkra::System {

namespace Protocol = NotificationDaemonProtocol;

namespace {

BusMethod method(const char* name)
{
    return {
        .destination = Protocol::kBusName,
        .path = Protocol::kObjectPath,
        .interface = Protocol::kInterface,
        .name = name,
    };
}

Protocol::UserInfo messageFor(const UserInfo& userInfo)
{
    Protocol::UserInfo message;
    for (const auto& [key, value] : userInfo) {
        if (const auto* text = std::get_if<std::string>(&value))
            message.emplace(validUtf8(key), validUtf8(*text));
        else
            message.emplace(validUtf8(key), std::get<double>(value));
    }
    return message;
}

std::string signalRule(const char* name)
{
    return std::string("type='signal',sender='") + Protocol::kBusName + "',interface='" + Protocol::kInterface
        + "',member='" + name + "'";
}

Protocol::Request messageFor(const NotificationRequest& request)
{
    const auto& [identifier, content, trigger] = request;
    const auto& [year, month, day, hour, minute, second] = trigger.components;
    return {
        .identifier = validUtf8(identifier),
        .title = validUtf8(content.title),
        .body = validUtf8(content.body),
        .sound =
            content.sound == NotificationSound::Default ? Protocol::Sound::Default : Protocol::Sound::None,
        .interruptionLevel = static_cast<std::int32_t>(content.interruptionLevel),
        .userInfo = messageFor(content.userInfo),
        .components = {year, month, day, hour, minute, second},
        .repeats = trigger.repeats,
    };
}

NotificationRequest requestFrom(Protocol::Request message)
{
    const auto& [year, month, day, hour, minute, second] = message.components;
    return {
        .identifier = std::move(message.identifier),
        .content =
            {
                .title = std::move(message.title),
                .body = std::move(message.body),
                .sound = message.sound == Protocol::Sound::Default ? NotificationSound::Default
                                                                   : NotificationSound::None,
                .interruptionLevel = static_cast<InterruptionLevel>(message.interruptionLevel),
                .userInfo = std::move(message.userInfo),
            },
        .trigger = {.components = {year, month, day, hour, minute, second}, .repeats = message.repeats},
    };
}

// Names of the bus itself begin so; the daemon's own refusals are three of them.
/// The key of the action, and the request.
using Response = sdbus::Struct<std::string, Protocol::Request>;

NotificationResponse responseFrom(Response message)
{
    auto action = std::get<0>(message);
    // Desktop Notifications Specification 1.2: "default" is a click on the notification.
    if (action == "default")
        action = kDefaultActionIdentifier;
    return {.actionIdentifier = std::move(action), .request = requestFrom(std::get<1>(std::move(message)))};
}

bool isRefusal(const sdbus::Error& error)
{
    return error.getName() == Protocol::Error::kInvalidArgs
        || error.getName() == Protocol::Error::kAccessDenied
        || error.getName() == Protocol::Error::kLimitsExceeded || error.getName() == Protocol::Error::kIOError
        || error.getName() == Protocol::Error::kNoMemory;
}

NotificationCenterError describe(const sdbus::Error& error)
{
    if (isRefusal(error))
        return NotificationCenterError(
            "The notification service did not take the alarm: " + error.getMessage());
    return NotificationCenterError(
        "Alarms are not armed, because the notification service cannot be reached (" + error.getMessage()
        + "). Run \"tinkra doctor\" to see what is missing.");
}

}

/// A delegate, and how it hears of what the daemon does. Its steps run on the main thread.
struct NotificationCenterLinux::Delegation : std::enable_shared_from_this<Delegation> {
    std::weak_ptr<NotificationCenterDelegate> delegate;
    Executor mainThread;
    std::function<bool()> isActive;
    std::weak_ptr<MessageBus> bus;
    std::chrono::milliseconds limit{0};

    static Task<> present(std::shared_ptr<Delegation> self, NotificationRequest request)
    {
        const auto delegate = self->delegate.lock();
        // How the notification is shown is settled: the daemon waits for nobody.
        if (delegate && self->isActive())
            co_await delegate->willPresent(std::move(request));
    }

    /// What the daemon holds is handed over once, to whoever takes it.
    static Task<> takeResponses(std::shared_ptr<Delegation> self)
    {
        const auto bus = self->bus.lock();
        if (!bus || self->delegate.expired())
            co_return;
        std::vector<Response> responses;
        try {
            responses = co_await bus->call<std::vector<Response>>(method("TakeResponses"), self->limit);
        } catch (const sdbus::Error&) {
            co_return; // a daemon that cannot be reached holds none
        }
        for (auto& response : responses) {
            const auto delegate = self->delegate.lock();
            if (!delegate)
                co_return;
            co_await delegate->didReceive(responseFrom(std::move(response)));
        }
    }

    void observe(MessageBus& sessionBus)
    {
        sessionBus.observe(signalRule("Delivered"), [weak = weak_from_this()](sdbus::Message& signal) {
            std::string identifier;
            Protocol::Request request;
            signal >> identifier >> request;
            request.identifier = std::move(identifier);
            if (const auto self = weak.lock())
                asio::co_spawn(
                    self->mainThread, present(self, requestFrom(std::move(request))), asio::detached);
        });
        sessionBus.observe(signalRule("ResponseReceived"), [weak = weak_from_this()](sdbus::Message&) {
            if (const auto self = weak.lock())
                asio::co_spawn(self->mainThread, takeResponses(self), asio::detached);
        });
    }
};

NotificationCenterLinux::NotificationCenterLinux(std::shared_ptr<MessageBus> sessionBus)
    : NotificationCenterLinux(std::move(sessionBus), Limits())
{
}

NotificationCenterLinux::NotificationCenterLinux(std::shared_ptr<MessageBus> sessionBus, Limits limits)
    : m_bus(std::move(sessionBus))
    , m_limits(limits)
{
}

Task<bool> NotificationCenterLinux::requestAuthorization(std::uint32_t options)
{
    try {
        co_return co_await m_bus->call<bool>(method("RequestAuthorization"), m_limits.other, options);
    } catch (const sdbus::Error& error) {
        throw describe(error);
    }
}

Task<NotificationAuthorization> NotificationCenterLinux::authorizationStatus()
{
    try {
        const auto status =
            co_await m_bus->call<std::int32_t>(method("AuthorizationStatus"), m_limits.listing);
        co_return static_cast<NotificationAuthorization>(status);
    } catch (const sdbus::Error&) {
        co_return NotificationAuthorization::Denied;
    }
}

Task<std::vector<NotificationRequest>> NotificationCenterLinux::pendingRequests()
{
    std::vector<Protocol::Request> messages;
    try {
        messages = co_await m_bus->call<std::vector<Protocol::Request>>(method("Pending"), m_limits.listing);
    } catch (const sdbus::Error&) {
        // What cannot be reached holds nothing that we could rely on: everything is armed anew.
        co_return std::vector<NotificationRequest>();
    }
    std::vector<NotificationRequest> requests;
    requests.reserve(messages.size());
    for (auto& message : messages)
        requests.push_back(requestFrom(std::move(message)));
    co_return requests;
}

Task<> NotificationCenterLinux::add(NotificationRequest request)
{
    const auto message = messageFor(request);
    try {
        co_await m_bus->call(method("Add"), m_limits.other, message.identifier, message);
    } catch (const sdbus::Error& error) {
        throw describe(error);
    }
}

void NotificationCenterLinux::setDelegate(
    std::weak_ptr<NotificationCenterDelegate> delegate, Executor mainThread, std::function<bool()> isActive)
{
    m_delegation = std::make_shared<Delegation>();
    m_delegation->delegate = std::move(delegate);
    m_delegation->mainThread = std::move(mainThread);
    m_delegation->isActive = std::move(isActive);
    m_delegation->bus = m_bus;
    m_delegation->limit = m_limits.other;
    m_delegation->observe(*m_bus);
    // After the signals are watched, so that none is missed between the two.
    asio::co_spawn(m_delegation->mainThread, Delegation::takeResponses(m_delegation), asio::detached);
}

Task<> NotificationCenterLinux::removePending(std::vector<std::string> identifiers)
{
    if (identifiers.empty())
        co_return;
    for (auto& identifier : identifiers)
        identifier = validUtf8(identifier);
    try {
        co_await m_bus->call(method("RemovePending"), m_limits.other, std::move(identifiers));
    } catch (const sdbus::Error& error) {
        std::fprintf(stderr, "CalendarMurkel: alarms were not cancelled: %s\n", error.getMessage().c_str());
    }
}

}
