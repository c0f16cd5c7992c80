#include "TinkraSystemLinux/WorkspaceLinux.h"

#include "TinkraSystemLinux/FileDescriptor.h"
#include "TinkraSystemLinux/ValidUtf8.h"

#include <pwd.h>
#include <sdbus-c++/sdbus-c++.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <future>
#include <initializer_list>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace Tinkra::System {

namespace {

constexpr std::string_view kPrivacySettings =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_Calendars";

/// A field of the journal's native protocol; the length stands before the text, which may hold line ends.
std::string journalField(std::string_view name, std::string_view value)
{
    std::string field(name);
    field += '\n';
    for (unsigned shift = 0; shift < 64; shift += 8)
        field += static_cast<char>((std::uint64_t{value.size()} >> shift) & 0xffU);
    (field += value) += '\n';
    return field;
}

bool sendToJournal(const std::filesystem::path& journal, const std::string& entry)
{
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto& name = journal.native();
    if (!socket || name.size() >= sizeof address.sun_path)
        return false;
    std::ranges::copy(name, address.sun_path);
    const auto* where = reinterpret_cast<const sockaddr*>(&address);
    return ::sendto(
               socket.get(), entry.data(), entry.size(), MSG_DONTWAIT | MSG_NOSIGNAL, where, sizeof address)
        == static_cast<ssize_t>(entry.size());
}

void logLine(const std::filesystem::path& journal, std::string_view line)
{
    const auto entry = journalField("MESSAGE", line) + journalField("PRIORITY", "6")
        + journalField("SYSLOG_IDENTIFIER", "tinkra-app");
    if (!sendToJournal(journal, entry))
        std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
}

/// Listens to logind, on a thread of its own: connecting to a bus that does not answer takes half a minute.
class WakeWatch {
public:
    WakeWatch(std::function<void()> awake, std::filesystem::path journal)
    {
        std::promise<void> listening;
        const auto isListening = listening.get_future();
        m_thread = std::thread(
            &WakeWatch::listen, m_ears, std::move(awake), std::move(journal), std::move(listening));
        isListening.wait_for(std::chrono::seconds(1));
    }
    WakeWatch(const WakeWatch&) = delete;
    WakeWatch& operator=(const WakeWatch&) = delete;
    ~WakeWatch()
    {
        std::unique_lock lock(m_ears->mutex);
        m_ears->isAbandoned = true;
        const bool isListening = m_ears->connection != nullptr;
        if (isListening)
            m_ears->connection->leaveEventLoop();
        lock.unlock();
        if (isListening)
            m_thread.join();
        else
            m_thread.detach(); // it owns what it uses, and ends by itself
    }

private:
    struct Ears {
        std::mutex mutex; // guards what follows
        bool isAbandoned = false;
        std::unique_ptr<sdbus::IConnection> connection;
    };

    static void listen(const std::shared_ptr<Ears>& ears, const std::function<void()>& awake,
        const std::filesystem::path& journal, std::promise<void> listening)
    {
        try {
            auto connection = sdbus::createSystemBusConnection();
            const auto manager =
                sdbus::createProxy(*connection, "org.freedesktop.login1", "/org/freedesktop/login1");
            manager->uponSignal("PrepareForSleep")
                .onInterface("org.freedesktop.login1.Manager")
                .call([&awake](bool isGoingToSleep) {
                    if (!isGoingToSleep)
                        awake();
                });
            manager->finishRegistration();

            auto& loop = *connection;
            std::unique_lock lock(ears->mutex);
            if (ears->isAbandoned)
                return;
            ears->connection = std::move(connection);
            lock.unlock();
            listening.set_value();
            loop.enterEventLoop();
        } catch (const sdbus::Error& error) {
            logLine(journal, "CalendarMurkel: wakes are not told of: " + error.getMessage());
        }
    }

    std::shared_ptr<Ears> m_ears = std::make_shared<Ears>();
    std::thread m_thread;
};

bool run(std::initializer_list<std::string_view> command)
{
    std::vector<std::string> words(command.begin(), command.end());
    std::vector<char*> arguments;
    for (auto& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t process = -1;
    if (::posix_spawnp(&process, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
        return false;
    // It may run for as long as the browser does.
    std::thread([process] { ::waitpid(process, nullptr, 0); }).detach();
    return true;
}

bool openPrivacySettings()
{
    return run({"gnome-control-center", "online-accounts"}) || run({"systemsettings", "kcm_kaccounts"})
        || run({"xfce4-settings-manager"});
}

}

WorkspaceLinux::WorkspaceLinux(std::filesystem::path journal)
    : m_journal(std::move(journal))
{
}

Observation WorkspaceLinux::observeDidWake(std::function<void()> awake)
{
    return std::make_shared<WakeWatch>(std::move(awake), m_journal);
}

bool WorkspaceLinux::open(std::string_view address)
{
    if (address == kPrivacySettings)
        return openPrivacySettings();
    // Nothing that xdg-open could take for an option, or for a file of ours.
    const bool isOfWeb = address.starts_with("https://") || address.starts_with("http://");
    return isOfWeb && address.find('\0') == std::string_view::npos && run({"xdg-open", address});
}

std::string WorkspaceLinux::fullUserName()
{
    passwd account{};
    passwd* found = nullptr;
    std::vector<char> texts(16384);
    if (::getpwuid_r(::getuid(), &account, texts.data(), texts.size(), &found) != 0 || found == nullptr)
        return {};
    const std::string login = account.pw_name;
    const std::string_view gecos = account.pw_gecos == nullptr ? "" : account.pw_gecos;
    std::string name;
    for (const char each : gecos.substr(0, gecos.find(','))) {
        if (each != '&') {
            name += each;
        } else if (!login.empty()) { // stands for the account's name, with a capital
            name += static_cast<char>(std::toupper(static_cast<unsigned char>(login[0])));
            name += login.substr(1);
        }
    }
    return validUtf8(name.empty() ? login : name);
}

void WorkspaceLinux::log(std::string_view line)
{
    logLine(m_journal, line);
}

}
