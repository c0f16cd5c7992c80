#include "PrivateSoundServer/PrivateSoundServer.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

namespace Tinkra {

namespace {

constexpr std::chrono::seconds kPatience{10};
constexpr std::chrono::milliseconds kGlance{10};

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

template <typename Condition> void waitUntil(Condition condition, const char* what)
{
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error(what);
        std::this_thread::sleep_for(kGlance);
    }
}

}

PrivateSoundServer::PrivateSoundServer()
{
    const auto folder = m_folder.path().string();
    ::setenv("PULSE_SERVER", ("unix:" + folder + "/socket").c_str(), 1);
    ::setenv("PULSE_COOKIE", (folder + "/cookie").c_str(), 1);
    start();
}

PrivateSoundServer::~PrivateSoundServer()
{
    kill();
    ::unsetenv("PULSE_SERVER");
    ::unsetenv("PULSE_COOKIE");
}

void PrivateSoundServer::start()
{
    const auto folder = m_folder.path().string();
    std::filesystem::remove(m_folder.path() / "socket");
    std::vector<std::string> arguments{"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1",
        "--disable-shm=yes", "--use-pid-file=no", "-L", "module-null-sink sink_name=private", "-L",
        "module-native-protocol-unix auth-anonymous=1 socket=" + folder + "/socket"};
    std::vector<std::string> variables{"PATH=/usr/bin:/bin"};
    for (const auto* name : {"HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH"})
        variables.push_back(std::string(name) + "=" + folder);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    const auto log = folder + "/log";
    ::posix_spawn_file_actions_addopen(
        &actions, STDERR_FILENO, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    const int error = ::posix_spawnp(&m_process, "pulseaudio", &actions, nullptr,
        pointersTo(arguments).data(), pointersTo(variables).data());
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("pulseaudio cannot be started");
    waitUntil([] { return std::system("pactl info >/dev/null 2>&1") == 0; }, "pulseaudio does not answer");
}

void PrivateSoundServer::kill()
{
    if (m_process < 0)
        return;
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
    m_process = -1;
}

void PrivateSoundServer::freeze()
{
    ::kill(m_process, SIGSTOP);
    int status = 0;
    ::waitpid(m_process, &status, WUNTRACED);
}

void PrivateSoundServer::thaw()
{
    ::kill(m_process, SIGCONT);
}

std::string PrivateSoundServer::control(const std::string& arguments) const
{
    FILE* output = ::popen(("pactl " + arguments).c_str(), "r");
    std::string text;
    std::array<char, 4096> part{};
    for (std::size_t got = 0; (got = std::fread(part.data(), 1, part.size(), output)) > 0;)
        text.append(part.data(), got);
    if (::pclose(output) != 0)
        throw std::runtime_error("pactl " + arguments + " failed");
    return text;
}

int PrivateSoundServer::playing() const
{
    const auto streams = control("list short sink-inputs");
    return static_cast<int>(std::ranges::count(streams, '\n'));
}

void PrivateSoundServer::waitUntilPlaying(int streams) const
{
    waitUntil([&] { return playing() == streams; }, "the streams are not as many as were awaited");
}

}
