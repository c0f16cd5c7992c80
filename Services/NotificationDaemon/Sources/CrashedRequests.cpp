#include "NotificationDaemon/CrashedRequests.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <unistd.h>

namespace Tinkra::NotificationDaemon {

namespace {

std::atomic<std::int64_t> currentRequest = 0;
std::atomic<int> crashFile = -1;

/// Only calls that are safe in a signal handler.
void blameCurrentRequest(int signal)
{
    const std::int64_t id = currentRequest;
    const int file = crashFile;
    if (id != 0 && file >= 0) {
        [[maybe_unused]] const auto written = write(file, &id, sizeof id);
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

}

BeingProcessed::BeingProcessed(std::int64_t id)
{
    currentRequest = id;
}

BeingProcessed::~BeingProcessed()
{
    currentRequest = 0;
}

void CrashedRequests::record(const std::string& file)
{
    crashFile = open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);

    // A stack of its own, so that a stack that ran over is recorded too.
    static std::array<char, 16384> stack;
    stack_t alternative{};
    alternative.ss_sp = stack.data();
    alternative.ss_size = stack.size();
    sigaltstack(&alternative, nullptr);
    struct sigaction action { };
    action.sa_handler = blameCurrentRequest;
    action.sa_flags = SA_ONSTACK | static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL})
        sigaction(signal, &action, nullptr);
}

std::set<std::int64_t> CrashedRequests::repeated(const std::string& file)
{
    std::ifstream in(file, std::ios::binary);
    std::map<std::int64_t, int> crashes;
    std::set<std::int64_t> found;
    for (std::array<char, sizeof(std::int64_t)> bytes{}; in.read(bytes.data(), bytes.size());) {
        std::int64_t id = 0;
        std::memcpy(&id, bytes.data(), sizeof id);
        if (++crashes[id] >= 2)
            found.insert(id);
    }
    return found;
}

void CrashedRequests::clear(const std::string& file)
{
    [[maybe_unused]] const int result = truncate(file.c_str(), 0);
}

}
