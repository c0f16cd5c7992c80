#include "PrivateBus/PrivateBus.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <vector>

namespace Tinkra {

PrivateBus::PrivateBus(Service service)
    : m_address("unix:path=" + (m_folder.path() / "bus").string())
{
    const std::string program = service == Service::Working ? TINKRA_NOTIFIERD : "/nowhere/at/all";
    if (service != Service::Missing)
        std::ofstream(m_folder.path() / "co.calendarmurkel.NotificationCenter.service")
            << "[D-BUS Service]\nName=co.calendarmurkel.NotificationCenter\nExec=" << program << '\n';
    std::ofstream(m_folder.path() / "bus.conf")
        << "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig><type>session</type><listen>"
        << m_address << "</listen><servicedir>" << m_folder.path().string()
        << "</servicedir><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n";
    ::setenv("DBUS_SESSION_BUS_ADDRESS", m_address.c_str(), 1);
    start();
}

PrivateBus::~PrivateBus()
{
    stop();
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

void PrivateBus::restart()
{
    stop();
    start();
}

void PrivateBus::start()
{
    // The address is printed when the bus listens.
    std::array<int, 2> pipe = {};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("pipe2 failed");
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, pipe[1], 3);
    const auto log = (m_folder.path() / "log").string();
    ::posix_spawn_file_actions_addopen(
        &actions, STDERR_FILENO, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);

    std::vector<std::string> variables{"PATH=/usr/bin:/bin", "DBUS_SESSION_BUS_ADDRESS=" + m_address};
    for (const auto* name : {"HOME", "XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        variables.push_back(std::string(name) + "=" + m_folder.path().string());
    for (const auto* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (const char* value = std::getenv(name))
            variables.push_back(std::string(name) + "=" + value);
    }
    std::vector<char*> environment;
    environment.reserve(variables.size() + 1);
    for (auto& variable : variables)
        environment.push_back(variable.data());
    environment.push_back(nullptr);

    std::string program = "dbus-daemon";
    auto configuration = "--config-file=" + (m_folder.path() / "bus.conf").string();
    std::string inForeground = "--nofork";
    std::string report = "--print-address=3";
    const std::array<char*, 5> arguments{
        program.data(), configuration.data(), inForeground.data(), report.data(), nullptr};
    const int error =
        ::posix_spawnp(&m_process, "dbus-daemon", &actions, nullptr, arguments.data(), environment.data());
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(pipe[1]);
    char byte = 0;
    const bool isUp = error == 0 && ::read(pipe[0], &byte, 1) == 1;
    ::close(pipe[0]);
    if (!isUp)
        throw std::runtime_error("dbus-daemon did not start");
}

void PrivateBus::stop()
{
    // What it started ends by itself when its bus has gone.
    ::kill(m_process, SIGTERM);
    ::waitpid(m_process, nullptr, 0);
}

}
