#include "PrivateLoginManager/PrivateLoginManager.h"

#include <sdbus-c++/sdbus-c++.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <thread>

namespace Tinkra {

namespace {

constexpr auto kName = "org.freedesktop.login1";
constexpr auto kPath = "/org/freedesktop/login1";
constexpr auto kManager = "org.freedesktop.login1.Manager";

bool waitUntil(const std::function<bool()>& isSo)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

pid_t start(std::vector<std::string> words, const std::filesystem::path& log)
{
    std::vector<char*> arguments;
    for (auto& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(
            &actions, stream, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    pid_t process = -1;
    const int error = ::posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error(words[0] + " did not start");
    return process;
}

void end(pid_t process)
{
    if (process < 0)
        return;
    ::kill(process, SIGTERM);
    ::waitpid(process, nullptr, 0);
}

}

PrivateLoginManager::PrivateLoginManager(Service service)
    : m_address("unix:path=" + (m_folder.path() / "bus").string())
{
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", m_address.c_str(), 1);
    startBus();
    if (service == Service::Working)
        startService();
}

PrivateLoginManager::~PrivateLoginManager()
{
    m_manager.reset();
    m_connection.reset();
    end(m_service);
    end(m_bus);
    ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

void PrivateLoginManager::startBus()
{
    std::ofstream(m_folder.path() / "bus.conf")
        << "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig><type>session</type><listen>"
        << m_address
        << "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n";
    m_bus = start({"dbus-daemon", "--config-file=" + (m_folder.path() / "bus.conf").string(), "--nofork",
                      "--nopidfile"},
        m_folder.path() / "log");
    if (!waitUntil([this] { return std::filesystem::exists(m_folder.path() / "bus"); }))
        throw std::runtime_error("dbus-daemon did not start");
}

void PrivateLoginManager::startService()
{
    m_service = start(
        {"/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind"}, m_folder.path() / "log");
    m_connection = sdbus::createSystemBusConnection();
    m_manager = sdbus::createProxy(*m_connection, kName, kPath);
    const auto answers = [this] {
        try {
            inhibitors();
            return true;
        } catch (const sdbus::Error&) {
            return false;
        }
    };
    if (!waitUntil(answers))
        throw std::runtime_error("logind did not start");
}

std::vector<std::string> PrivateLoginManager::inhibitors()
{
    using Inhibitor =
        sdbus::Struct<std::string, std::string, std::string, std::string, std::uint32_t, std::uint32_t>;
    std::vector<Inhibitor> all;
    m_manager->callMethod("ListInhibitors").onInterface(kManager).storeResultsTo(all);
    std::vector<std::string> texts;
    for (const auto& each : all)
        texts.push_back(each.get<0>() + "|" + each.get<1>() + "|" + each.get<2>() + "|" + each.get<3>());
    return texts;
}

bool PrivateLoginManager::hasInhibitors(std::size_t count)
{
    return waitUntil([this, count] { return inhibitors().size() == count; });
}

void PrivateLoginManager::prepareForSleep(bool isGoingToSleep)
{
    m_manager->callMethod("EmitSignal")
        .onInterface("org.freedesktop.DBus.Mock")
        .withArguments(std::string(kManager), std::string("PrepareForSleep"), std::string("b"),
            std::vector<sdbus::Variant>{sdbus::Variant(isGoingToSleep)});
}

}
