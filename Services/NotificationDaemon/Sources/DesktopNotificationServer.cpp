#include "NotificationDaemon/DesktopNotificationServer.h"

#include "NotificationDaemon/Log.h"
#include "NotificationDaemon/NotificationText.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <sdbus-c++/sdbus-c++.h>

namespace Tinkra::NotificationDaemon {

namespace {

constexpr auto kName = "org.freedesktop.Notifications";
constexpr auto kPath = "/org/freedesktop/Notifications";
constexpr auto kInterface = "org.freedesktop.Notifications";
constexpr auto kBus = "org.freedesktop.DBus";

// The centre stops waiting after three seconds; an answer that comes later still counts.
constexpr auto kLatestAnswer = std::chrono::seconds(120);
constexpr auto kCapabilitiesTime = std::chrono::seconds(3);

constexpr std::size_t kLongestSummary = 200;
constexpr std::size_t kLongestBody = 1000;
constexpr std::uint8_t kCritical = 2;
constexpr std::int32_t kNeverExpires = 0;

std::map<std::string, sdbus::Variant> hintsFor(const Notification& notification)
{
    std::map<std::string, sdbus::Variant> hints;
    hints["urgency"] = sdbus::Variant(kCritical);
    hints["desktop-entry"] = sdbus::Variant(std::string("co.calendarmurkel.Tinkra"));
    hints["category"] = sdbus::Variant(std::string("x-calendarmurkel.meeting"));
    if (notification.sound)
        hints["sound-name"] = sdbus::Variant(std::string("message-new-instant"));
    else
        hints["suppress-sound"] = sdbus::Variant(true);
    if (notification.repeat)
        hints["x-calendarmurkel-repeat"] = sdbus::Variant(true);
    return hints;
}

}

DesktopNotificationServer::DesktopNotificationServer(sdbus::IConnection& connection, Handlers handlers)
    : m_handlers(std::move(handlers))
    , m_bus(sdbus::createProxy(connection, kBus, "/org/freedesktop/DBus"))
    , m_server(sdbus::createProxy(connection, kName, kPath))
{
    // sdbus-c++ opens descriptors of its own for the first variant; at the first alarm there may be none
    // left.
    [[maybe_unused]] const auto first = hintsFor({});
    connection.addMatch(
        "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
        "member='NameOwnerChanged',arg0='org.freedesktop.Notifications'",
        [this](sdbus::Message& signal) {
            std::string name;
            std::string oldOwner;
            std::string newOwner;
            signal >> name >> oldOwner >> newOwner;
            ownerChanged(oldOwner, newOwner);
        },
        sdbus::floating_slot);
    connection.addMatch(
        "type='signal',sender='org.freedesktop.Notifications',interface='org.freedesktop.Notifications',"
        "member='ActionInvoked'",
        [this](sdbus::Message& signal) {
            std::uint32_t serverID = 0;
            std::string action;
            signal >> serverID >> action;
            m_handlers.actionInvoked(serverID, action);
        },
        sdbus::floating_slot);
    m_bus->callMethod("NameHasOwner")
        .onInterface(kBus)
        .withArguments(std::string(kName))
        .storeResultsTo(m_hasOwner);
    if (m_hasOwner)
        askForCapabilities();
}

void DesktopNotificationServer::ownerChanged(const std::string& oldOwner, const std::string& newOwner)
{
    ++m_generation;
    m_waiting.clear();
    m_knowledge = Knowledge::None;
    m_name.clear();
    m_capabilities.clear();
    m_hasOwner = !newOwner.empty();
    if (!oldOwner.empty())
        m_handlers.vanished();
    if (m_hasOwner) {
        askForCapabilities();
        m_handlers.appeared();
    }
}

bool DesktopNotificationServer::isAvailable()
{
    if (m_hasOwner)
        return true;
    std::vector<std::string> names;
    m_bus->callMethod("ListActivatableNames").onInterface(kBus).storeResultsTo(names);
    return std::find(names.begin(), names.end(), kName) != names.end();
}

void DesktopNotificationServer::askForCapabilities()
{
    m_knowledge = Knowledge::Asked;
    m_server->callMethodAsync("GetCapabilities")
        .onInterface(kInterface)
        .withTimeout(kCapabilitiesTime)
        .uponReplyInvoke([this, asked = m_generation](
                             const sdbus::Error* error, std::vector<std::string> capabilities) {
            if (asked != m_generation)
                return;
            m_readsMarkup = error != nullptr
                || std::find(capabilities.begin(), capabilities.end(), "body-markup") != capabilities.end();
            m_knowledge = error != nullptr ? Knowledge::None : Knowledge::Complete;
            m_capabilities = std::move(capabilities);
            for (const auto& [token, notification] : std::exchange(m_waiting, {}))
                notify(token, notification);
        });
    m_server->callMethodAsync("GetServerInformation")
        .onInterface(kInterface)
        .withTimeout(kCapabilitiesTime)
        .uponReplyInvoke([this, asked = m_generation](const sdbus::Error* error, std::string name,
                             const std::string& /*vendor*/, const std::string& version,
                             const std::string& /*interfaceVersion*/) {
            if (error == nullptr && asked == m_generation)
                m_name = std::move(name) + " " + version;
        });
}

void DesktopNotificationServer::show(std::int64_t token, const Notification& notification)
{
    if (m_knowledge == Knowledge::Complete) {
        notify(token, notification);
        return;
    }
    m_waiting.emplace_back(token, notification);
    if (m_knowledge == Knowledge::None)
        askForCapabilities();
}

void DesktopNotificationServer::notify(std::int64_t token, const Notification& notification)
{
    auto body = oneLine(notification.body, kLongestBody);
    if (m_readsMarkup)
        body = escapeMarkup(body);
    m_server->callMethodAsync("Notify")
        .onInterface(kInterface)
        .withTimeout(kLatestAnswer)
        .withArguments(std::string("Calendar Murkel"), std::uint32_t{0},
            std::string("co.calendarmurkel.Tinkra"), oneLine(notification.summary, kLongestSummary), body,
            std::vector<std::string>{"default", "Open"}, hintsFor(notification), kNeverExpires)
        .uponReplyInvoke(
            [this, token, asked = m_generation](const sdbus::Error* error, std::uint32_t serverID) {
                // What a server that is gone has to say counts no more: its notifications were offered again.
                if (asked != m_generation)
                    return;
                if (error != nullptr)
                    log(LogLevel::Warning, "the notification server refused: " + inQuotes(error->what()));
                m_handlers.answered(token, error != nullptr ? 0 : serverID);
            });
}

}
