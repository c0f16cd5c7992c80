#include "TinkraSystemLinux/RunningApplicationLinux.h"

#include "TinkraSystemLinux/ApplicationNames.h"
#include "TinkraSystemLinux/MessageBus.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>

namespace Tinkra::System {

namespace {

using namespace ApplicationNames;

constexpr std::chrono::milliseconds kCallTime{5000};
constexpr Seconds kGlance{0.02};
constexpr int kGlances = 500; // ten seconds

/// Starts a program that outlives us and says nothing; -1 when it cannot be started.
pid_t spawnDetached(const std::filesystem::path& program)
{
    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    for (const int output : {STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&files, output, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);

    std::string path = program.string();
    const std::array<char*, 2> arguments{path.data(), nullptr};
    pid_t process = -1;
    if (::posix_spawn(&process, path.c_str(), &files, &attributes, arguments.data(), environ) != 0)
        process = -1;
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&files);
    return process;
}

}

std::filesystem::path RunningApplicationLinux::installedProgram()
{
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::path()
                 : self.parent_path().parent_path() / TINKRA_LIBEXECDIR / "tinkra-app";
}

RunningApplicationLinux::RunningApplicationLinux(
    std::shared_ptr<MessageBus> sessionBus, std::shared_ptr<Clock> clock, std::filesystem::path program)
    : m_bus(std::move(sessionBus))
    , m_clock(std::move(clock))
    , m_program(std::move(program))
{
}

Task<> RunningApplicationLinux::testAlarm()
{
    try {
        if (!co_await isRunning())
            co_await start();
        co_await m_bus->call({kBusName, kObjectPath, kInterface, "TestAlarm"}, kCallTime);
    } catch (const sdbus::Error& error) {
        throw ApplicationUnreachable("The application cannot be reached (" + error.getMessage()
            + "). Run \"tinkra doctor\" to see what is missing.");
    }
}

Task<bool> RunningApplicationLinux::isRunning()
{
    return m_bus->call<bool>(
        {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner"}, kCallTime,
        std::string(kBusName));
}

Task<> RunningApplicationLinux::start()
{
    const auto process = spawnDetached(m_program);
    if (process < 0)
        throw ApplicationUnreachable(
            m_program.string() + " cannot be started. Install Calendar Murkel with its application.");
    for (int i = 0; i < kGlances; ++i) {
        co_await m_clock->sleepFor(kGlance, {});
        if (co_await isRunning())
            co_return;
        // Whoever finds the name taken ends without a fault: then the next glance sees the owner.
        int status = 0;
        if (::waitpid(process, &status, WNOHANG) == process && status != 0)
            throw ApplicationUnreachable("The application ended as soon as it was started. Run \""
                + m_program.string() + "\" to see why.");
    }
    throw ApplicationUnreachable(
        "The application was started and does not answer. End the process tinkra-app.");
}

}
