#include "TinkraSystemLinux/ApplicationInstanceLinux.h"

#include "TinkraSystemLinux/ApplicationNames.h"

#include <asio/post.hpp>
#include <sdbus-c++/sdbus-c++.h>

#include <map>
#include <string>
#include <vector>

namespace Tinkra::System {

namespace {

using namespace ApplicationNames;
using PlatformData = std::map<std::string, sdbus::Variant>;

constexpr auto kNameIsTaken = "org.freedesktop.DBus.Error.FileExists";

/// Calls arrive on the connection's thread; what they ask for happens on the main one.
std::function<void()> onMainThread(const Executor& mainThread, std::function<void()> request)
{
    return [mainThread, request = std::move(request)] {
        if (request)
            asio::post(mainThread, request);
    };
}

}

ApplicationInstanceLinux::ApplicationInstanceLinux() = default;

ApplicationInstanceLinux::~ApplicationInstanceLinux()
{
    release();
}

bool ApplicationInstanceLinux::claim(Executor mainThread, ApplicationRequests requests)
{
    const auto testAlarm = onMainThread(mainThread, std::move(requests.testAlarm));
    const auto activate = onMainThread(mainThread, std::move(requests.activate));
    try {
        m_connection = sdbus::createSessionBusConnection();
        m_object = sdbus::createObject(*m_connection, kObjectPath);
        m_object->registerMethod("TestAlarm").onInterface(kInterface).implementedAs(testAlarm);
        m_object->registerMethod("Activate")
            .onInterface(kDesktopInterface)
            .implementedAs([activate](const PlatformData&) { activate(); });
        m_object->registerMethod("Open")
            .onInterface(kDesktopInterface)
            .implementedAs([activate](const std::vector<std::string>&, const PlatformData&) { activate(); });
        m_object->registerMethod("ActivateAction")
            .onInterface(kDesktopInterface)
            .implementedAs([activate](const std::string&, const std::vector<sdbus::Variant>&,
                               const PlatformData&) { activate(); });
        m_object->finishRegistration();
        m_connection->requestName(kBusName);
    } catch (const sdbus::Error& error) {
        release();
        return error.getName() != kNameIsTaken;
    }
    m_thread = std::thread([connection = m_connection.get()] {
        try {
            connection->enterEventLoop();
        } catch (const sdbus::Error&) {
            // The bus has gone, and with it everybody who could ask.
            return;
        }
    });
    return true;
}

void ApplicationInstanceLinux::release()
{
    if (m_thread.joinable()) {
        m_connection->leaveEventLoop();
        m_thread.join();
    }
    m_object.reset();
    m_connection.reset();
}

}
