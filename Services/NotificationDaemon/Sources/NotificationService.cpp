#include "NotificationDaemon/NotificationService.h"

#include "NotificationDaemon/Log.h"
#include "NotificationDaemonProtocol/Names.h"
#include "NotificationDaemonProtocol/RequestMessage.h"

#include <chrono>
#include <new>
#include <sdbus-c++/sdbus-c++.h>
#include <unistd.h>

namespace Tinkra::NotificationDaemon {

using namespace NotificationDaemonProtocol;

namespace {

constexpr auto kBus = "org.freedesktop.DBus";
constexpr auto kApplicationName = "co.calendarmurkel.Tinkra";
constexpr auto kStartTime = std::chrono::seconds(30);

constexpr std::int32_t kDenied = 1;
constexpr std::int32_t kAuthorized = 2;

/// An answer that lists everything counts as many calls.
constexpr double kRequestsPerCall = 100;

sdbus::Error refusalFor(CallerPolicy::Verdict verdict)
{
    switch (verdict) {
    case CallerPolicy::Verdict::OtherUser:
        return sdbus::Error(Error::kAccessDenied, "only programs of the same user may call");
    case CallerPolicy::Verdict::Sandboxed:
        return sdbus::Error(Error::kAccessDenied, "sandboxed programs may not call");
    default:
        return sdbus::Error(Error::kLimitsExceeded, "too many calls: slow down");
    }
}

/// What went wrong, in the language of the bus.
sdbus::Error busError()
{
    try {
        throw;
    } catch (const sdbus::Error& error) {
        return error;
    } catch (const LimitExceeded& error) {
        return sdbus::Error(Error::kLimitsExceeded, error.what());
    } catch (const StoreError& error) {
        return sdbus::Error(Error::kIOError, error.what());
    } catch (const std::bad_alloc&) {
        return sdbus::Error(Error::kNoMemory, "out of memory");
    } catch (const std::exception& error) {
        return sdbus::Error(Error::kFailed, error.what());
    }
}

}

NotificationService::NotificationService(sdbus::IConnection& connection, NotificationCenter& center,
    DesktopNotificationServer& server, HeldResponses& responses, std::function<Moment()> now,
    std::string inMemoryReason)
    : m_center(center)
    , m_server(server)
    , m_responses(responses)
    , m_now(std::move(now))
    , m_inMemoryReason(std::move(inMemoryReason))
    , m_callers(geteuid())
    , m_object(sdbus::createObject(connection, kObjectPath))
    , m_bus(sdbus::createProxy(connection, kBus, "/org/freedesktop/DBus"))
{
    registerMethod("Add", "sa{sv}", "", &NotificationService::add);
    registerMethod("RemovePending", "as", "", &NotificationService::removePending);
    registerMethod("PendingIdentifiers", "", "as", &NotificationService::pendingIdentifiers);
    registerMethod("Pending", "", "aa{sv}", &NotificationService::pending);
    registerMethod("RequestAuthorization", "u", "b", &NotificationService::requestAuthorization);
    registerMethod("AuthorizationStatus", "", "i", &NotificationService::authorizationStatus);
    registerMethod("Status", "", "a{sv}", &NotificationService::status);
    registerMethod("AcknowledgeReset", "", "", &NotificationService::acknowledgeReset);
    registerMethod("Missed", "", "aa{sv}", &NotificationService::missed);
    registerMethod("TakeResponses", "", "a(sa{sv})", &NotificationService::takeResponses);
    m_object->registerSignal(kInterface, "StoreWasReset", "");
    m_object->registerSignal(kInterface, "Delivered", "sa{sv}");
    m_object->registerSignal(kInterface, "ResponseReceived", "");
    m_object->finishRegistration();
}

void NotificationService::registerMethod(const char* name, const char* in, const char* out, Handler handler)
{
    m_object->registerMethod(kInterface, name, in, out,
        [this, name, handler](sdbus::MethodCall call) { serve(call, name, handler); });
}

void NotificationService::serve(sdbus::MethodCall& call, const char* name, Handler handler)
{
    try {
        admit(call, name);
        auto reply = call.createReply();
        (this->*handler)(call, reply);
        if (!call.doesntExpectReply())
            reply.send();
    } catch (...) {
        const auto error = busError();
        // Of a flood there would be no end.
        if (error.getName() != Error::kLimitsExceeded) {
            log(LogLevel::Warning,
                std::string(name) + " of " + inQuotes(call.getSender())
                    + " failed: " + inQuotes(error.getMessage()));
        }
        throw error;
    }
}

void NotificationService::admit(const sdbus::MethodCall& call, const char* name)
{
    const bool listsAll = std::string_view(name).starts_with("Pending");
    const auto listed = listsAll ? static_cast<double>(m_center.book().listedCount()) : 0;
    const double weight = 1 + listed / kRequestsPerCall;
    const auto ask = [&] {
        return CallerPolicy::Credentials{.user = call.getCredsEuid(), .process = call.getCredsPid()};
    };
    const auto verdict = m_callers.judge(call.getSender(), ask, weight, m_now().elapsed);
    if (verdict != CallerPolicy::Verdict::Welcome)
        throw refusalFor(verdict);
}

void NotificationService::add(sdbus::MethodCall& call, sdbus::MethodReply& /*reply*/)
{
    std::string identifier;
    Request request;
    call >> identifier >> request;
    if (identifier.empty())
        throw sdbus::Error(Error::kInvalidArgs, "the identifier is empty");
    request.identifier = identifier;
    const auto addition = m_center.add(request, m_now());
    const char* what = addition == NotificationCenter::Addition::Added ? "added "
        : addition == NotificationCenter::Addition::Replaced           ? "replaced "
                                                                       : "already delivered: ";
    log(LogLevel::Info, what + inQuotes(identifier) + " for " + inQuotes(call.getSender()));
}

void NotificationService::removePending(sdbus::MethodCall& call, sdbus::MethodReply& /*reply*/)
{
    std::vector<std::string> identifiers;
    call >> identifiers;
    m_center.removePending(identifiers, m_now());
    for (const auto& identifier : identifiers)
        log(LogLevel::Info, "cancelled " + inQuotes(identifier) + " for " + inQuotes(call.getSender()));
}

void NotificationService::pendingIdentifiers(sdbus::MethodCall& /*call*/, sdbus::MethodReply& reply)
{
    reply << m_center.pendingIdentifiers(m_now());
}

void NotificationService::pending(sdbus::MethodCall& /*call*/, sdbus::MethodReply& reply)
{
    reply << m_center.pending(m_now());
}

void NotificationService::missed(sdbus::MethodCall& /*call*/, sdbus::MethodReply& reply)
{
    reply << m_center.missed();
}

void NotificationService::requestAuthorization(sdbus::MethodCall& call, sdbus::MethodReply& reply)
{
    std::uint32_t options = 0;
    call >> options;
    reply << m_server.isAvailable();
}

void NotificationService::authorizationStatus(sdbus::MethodCall& /*call*/, sdbus::MethodReply& reply)
{
    reply << (m_server.isAvailable() ? kAuthorized : kDenied);
}

void NotificationService::acknowledgeReset(sdbus::MethodCall& /*call*/, sdbus::MethodReply& /*reply*/)
{
    m_center.acknowledgeReset();
    m_center.settle(m_now());
}

void NotificationService::status(sdbus::MethodCall& /*call*/, sdbus::MethodReply& reply)
{
    m_center.fire(m_now());
    const auto& book = m_center.book();
    const auto count = [&](Phase phase) {
        return sdbus::Variant(static_cast<std::uint32_t>(book.count(phase)));
    };
    std::map<std::string, sdbus::Variant> status{
        {"version", sdbus::Variant(std::string(TINKRA_VERSION))},
        {"pending", sdbus::Variant(static_cast<std::uint32_t>(book.listedCount()))},
        {"due", count(Phase::Due)},
        {"missed", count(Phase::Missed)},
        {"shown", count(Phase::Shown)},
        {"storeWasReset", sdbus::Variant(m_center.note("storeWasReset") != 0)},
        {"lostRecords", sdbus::Variant(static_cast<std::uint32_t>(m_center.note("lostRequests")))},
        {"inMemory", sdbus::Variant(!m_inMemoryReason.empty())},
        {"inMemoryReason", sdbus::Variant(m_inMemoryReason)},
        {"quarantined", sdbus::Variant(m_center.quarantined())},
        {"serverName", sdbus::Variant(m_server.name())},
        {"serverCapabilities", sdbus::Variant(m_server.capabilities())},
    };
    if (const auto next = m_center.nextTrigger())
        status["nextFireTime"] = sdbus::Variant(static_cast<double>(*next));
    reply << status;
}

void NotificationService::takeResponses(sdbus::MethodCall& /*call*/, sdbus::MethodReply& reply)
{
    std::vector<sdbus::Struct<std::string, Request>> responses;
    for (auto& [action, request] : m_responses.take())
        responses.emplace_back(std::move(action), std::move(request));
    reply << responses;
}

void NotificationService::emitStoreWasReset()
{
    m_object->emitSignal(m_object->createSignal(kInterface, "StoreWasReset"));
}

void NotificationService::emitDelivered(const Request& request)
{
    auto signal = m_object->createSignal(kInterface, "Delivered");
    signal << request.identifier << request;
    m_object->emitSignal(signal);
}

void NotificationService::emitResponseReceived()
{
    m_object->emitSignal(m_object->createSignal(kInterface, "ResponseReceived"));
}

void NotificationService::startApplication()
{
    m_bus->callMethodAsync("StartServiceByName")
        .onInterface(kBus)
        .withTimeout(kStartTime)
        .withArguments(std::string(kApplicationName), std::uint32_t{0})
        .uponReplyInvoke([](const sdbus::Error* error, std::uint32_t /*outcome*/) {
            if (error != nullptr)
                log(LogLevel::Warning, "the application was not started: " + inQuotes(error->what()));
        });
}

}
