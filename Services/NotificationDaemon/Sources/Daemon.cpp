#include "NotificationDaemon/Daemon.h"

#include "NotificationDaemon/AlarmTimer.h"
#include "NotificationDaemon/CrashedRequests.h"
#include "NotificationDaemon/DesktopNotificationServer.h"
#include "NotificationDaemon/FallbackAlarm.h"
#include "NotificationDaemon/HeldResponses.h"
#include "NotificationDaemon/Log.h"
#include "NotificationDaemon/NoStore.h"
#include "NotificationDaemon/NotificationCenter.h"
#include "NotificationDaemon/NotificationService.h"
#include "NotificationDaemon/SqliteStore.h"
#include "NotificationDaemon/StateDirectory.h"
#include "NotificationDaemon/SystemZone.h"
#include "NotificationDaemon/ZoneWatch.h"
#include "NotificationDaemonProtocol/Names.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <new>
#include <poll.h>
#include <sdbus-c++/sdbus-c++.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tinkra::NotificationDaemon {

namespace {

/// How often everything is looked at although nothing has told us to, in milliseconds.
constexpr std::int64_t kSafetyTick = 30000;
/// How many calls are answered before the timer is looked at again.
constexpr int kCallsAtATime = 4;
/// How long before an alarm nothing else is begun, in milliseconds.
constexpr int kQuietTime = 30;
constexpr int kMostFailures = 100;
constexpr int kOpenAttempts = 3;
/// For an answer of the bus itself.
constexpr auto kBusTime = std::chrono::seconds(3);

std::int64_t milliseconds(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return time.tv_sec * 1000 + time.tv_nsec / 1000000;
}

Moment now()
{
    timespec wall{};
    clock_gettime(CLOCK_REALTIME, &wall);
    return {.wall = wall.tv_sec, .elapsed = milliseconds(CLOCK_BOOTTIME)};
}

int signalDescriptor()
{
    sigset_t signals;
    sigemptyset(&signals);
    // SIGCONT: whoever was stopped has slept through clock changes that nobody reports.
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGCONT})
        sigaddset(&signals, signal);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_IGN); // nobody waits for the player of the fallback sound
    return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

/// What was kept, or a stand-in where nothing can be.
struct OpenedStore {
    std::unique_ptr<NotificationStore> store;
    SqliteStore::Contents contents;
    std::string inMemoryReason;
};

/// A disk that fails once, or is full for a moment, is no reason to do without it.
void openOnDisk(const std::string& file, OpenedStore& opened)
{
    for (int attempt = 0; attempt < kOpenAttempts && opened.store == nullptr; ++attempt) {
        opened.contents = {};
        try {
            opened.store = std::make_unique<SqliteStore>(file, opened.contents);
            opened.inMemoryReason.clear();
        } catch (const NewerStore& error) {
            opened.inMemoryReason = error.what();
            return;
        } catch (const std::exception& error) {
            opened.inMemoryReason = error.what();
            log(LogLevel::Error, opened.inMemoryReason);
        }
    }
}

OpenedStore openStore(const StateDirectory& directory)
{
    OpenedStore opened;
    const auto file = directory.file("notifications.db");
    opened.inMemoryReason = directory.problem();
    if (opened.inMemoryReason.empty())
        openOnDisk(file, opened);
    if (opened.store == nullptr) {
        log(LogLevel::Error, "requests are kept in memory only: " + opened.inMemoryReason);
        opened.contents = SqliteStore::read(file);
        opened.store = std::make_unique<NoStore>();
    }
    return opened;
}

/// The parts of the daemon, wired up, and its loop.
class Daemon final : public CenterObserver {
public:
    Daemon(sdbus::IConnection& connection, const StateDirectory& directory);

    int run();

    void delivered(const NotificationDaemonProtocol::Request& request, std::uint32_t serverID) override;
    void undeliverable(const NotificationDaemonProtocol::Request& request) override;

private:
    void actionInvoked(std::uint32_t serverID, const std::string& action);
    void load(const StateDirectory& directory);
    void turn();
    void outOfMemory();
    void lookAtZone();
    void answerCalls();
    void wait();
    bool endWasAskedFor() const;
    int waitingTime(const sdbus::IConnection::PollData& bus) const;
    bool alarmIsImminent() const;

    sdbus::IConnection& m_connection;
    int m_signals = signalDescriptor();
    SystemZone m_zone;
    ZoneWatch m_zoneWatch{m_zone.file()};
    AlarmTimer m_timer;
    FallbackAlarm m_fallback;
    OpenedStore m_opened;
    HeldResponses m_responses;
    DesktopNotificationServer m_server;
    NotificationCenter m_center;
    NotificationService m_service;
    std::int64_t m_zoneSeenAt = 0; ///< elapsed
    int m_failures = 0;
};

Daemon::Daemon(sdbus::IConnection& connection, const StateDirectory& directory)
    : m_connection(connection)
    , m_opened(openStore(directory))
    , m_server(connection,
          {.answered = [this](auto token, auto serverID) { m_center.answered(token, serverID, now()); },
              .appeared = [this] { m_center.serverAppeared(now()); },
              .vanished =
                  [this] {
                      m_responses.serverVanished();
                      m_center.serverVanished(now());
                  },
              .actionInvoked = [this](
                                   auto serverID, const auto& action) { actionInvoked(serverID, action); }})
    , m_center(*m_opened.store, m_server, m_zone, *this)
    , m_service(connection, m_center, m_server, m_responses, now, m_opened.inMemoryReason)
{
    load(directory);
}

void Daemon::load(const StateDirectory& directory)
{
    const auto crashes = directory.file("notifications.crashes");
    const bool keepsFiles = directory.problem().empty();
    const auto quarantine = keepsFiles ? CrashedRequests::repeated(crashes) : std::set<std::int64_t>{};
    if (keepsFiles)
        CrashedRequests::record(crashes);
    m_center.load(m_opened.contents.requests, m_opened.contents.notes, quarantine, now());
    if (m_opened.contents.wasDamaged)
        m_center.storeWasDamaged(m_opened.contents.lost, m_opened.contents.damagedRows);
    m_opened.contents = {};
    if (!quarantine.empty()) {
        log(LogLevel::Error,
            std::to_string(quarantine.size()) + " requests made the daemon crash and are set aside");
        m_center.settle(now());
        if (!m_center.isUnsettled())
            CrashedRequests::clear(crashes);
    }
    if (m_center.note("storeWasReset") != 0)
        m_service.emitStoreWasReset();
}

void Daemon::delivered(const NotificationDaemonProtocol::Request& request, std::uint32_t serverID)
{
    log(LogLevel::Info, "shown " + inQuotes(request.identifier));
    m_responses.delivered(request, serverID);
    m_service.emitDelivered(request);
}

void Daemon::actionInvoked(std::uint32_t serverID, const std::string& action)
{
    const auto identifier = m_responses.invoked(serverID, action);
    if (!identifier)
        return; // somebody else's notification
    log(LogLevel::Info, "the user responded to " + inQuotes(*identifier));
    m_service.emitResponseReceived();
    m_service.startApplication();
}

void Daemon::undeliverable(const NotificationDaemonProtocol::Request& request)
{
    log(LogLevel::Alert, "due, but no notification server takes it: " + inQuotes(request.identifier));
    m_fallback.sound();
}

int Daemon::run()
{
    int status = EXIT_SUCCESS;
    try {
        while (!endWasAskedFor()) {
            turn();
            wait();
        }
    } catch (const std::exception& error) {
        log(LogLevel::Error, error.what());
        status = EXIT_FAILURE;
    }
    m_center.settle(now());
    return status;
}

void Daemon::turn()
{
    try {
        lookAtZone();
        m_center.fire(now());
        if (!alarmIsImminent()) {
            answerCalls();
            m_center.settle(now());
        }
        m_failures = 0;
    } catch (const std::bad_alloc&) {
        outOfMemory();
    } catch (const sdbus::Error& error) {
        if (error.getName() != NotificationDaemonProtocol::Error::kNoMemory)
            throw;
        outOfMemory();
    }
    // Whatever went wrong: what is armed already still rings.
    m_timer.arm(m_center.nextTrigger());
}

/// Whoever asked for too much has been refused; the alarms go on.
void Daemon::outOfMemory()
{
    log(LogLevel::Error, "out of memory");
    if (++m_failures > kMostFailures)
        throw std::runtime_error("out of memory for too long");
}

/// When something has happened to its file, and now and then where that cannot be watched.
void Daemon::lookAtZone()
{
    const auto elapsed = milliseconds(CLOCK_BOOTTIME);
    if (!m_zoneWatch.takeNotice() && elapsed - m_zoneSeenAt < kSafetyTick)
        return;
    m_zoneSeenAt = elapsed;
    if (!m_zone.reload())
        return;
    log(LogLevel::Notice, "the time zone was changed");
    m_center.zoneChanged(now());
}

/// A few at a time: however many calls there are, the alarms come first.
void Daemon::answerCalls()
{
    for (int i = 0; i < kCallsAtATime && m_connection.processPendingRequest(); ++i)
        m_center.fire(now());
}

/// Within the last moments before an alarm nothing else is begun.
bool Daemon::alarmIsImminent() const
{
    const auto next = m_center.nextTrigger();
    if (!next)
        return false;
    const auto left = *next * 1000 - milliseconds(CLOCK_REALTIME);
    return left > 0 && left < kQuietTime;
}

int Daemon::waitingTime(const sdbus::IConnection::PollData& bus) const
{
    auto time = kSafetyTick;
    if (const auto retry = m_center.nextRetry())
        time = std::min(time, std::max<std::int64_t>(*retry - milliseconds(CLOCK_BOOTTIME), 0));
    if (const auto busTime = bus.getPollTimeout(); busTime >= 0)
        time = std::min<std::int64_t>(time, busTime);
    return static_cast<int>(time);
}

void Daemon::wait()
{
    pollfd timer{m_timer.descriptor(), POLLIN, 0};
    if (alarmIsImminent()) {
        poll(&timer, 1, kQuietTime);
    } else {
        const auto bus = m_connection.getEventLoopPollData();
        std::array<pollfd, 4> descriptors{timer, pollfd{bus.fd, bus.events, 0}, pollfd{m_signals, POLLIN, 0},
            pollfd{m_zoneWatch.descriptor(), POLLIN, 0}};
        poll(descriptors.data(), descriptors.size(), waitingTime(bus));
        timer = descriptors[0];
    }
    if (timer.revents != 0)
        m_timer.acknowledge();
}

bool Daemon::endWasAskedFor() const
{
    bool end = false;
    for (signalfd_siginfo signal{};
         read(m_signals, &signal, sizeof signal) == static_cast<ssize_t>(sizeof signal);)
        end = end || signal.ssi_signo != SIGCONT;
    return end;
}

}

int runDaemon()
{
    // Whatever the caller had: what we keep is nobody else's business.
    umask(S_IRWXG | S_IRWXO);
    try {
        const auto connection = sdbus::createSessionBusConnection();
        connection->setMethodCallTimeout(kBusTime);
        try {
            connection->requestName(NotificationDaemonProtocol::kBusName);
        } catch (const sdbus::Error&) {
            log(LogLevel::Notice, "another notification daemon serves this session");
            return EXIT_SUCCESS;
        }
        StateDirectory directory;
        if (!directory.lock()) {
            log(LogLevel::Error, "another notification daemon uses " + directory.path());
            return EXIT_FAILURE;
        }
        return Daemon(*connection, directory).run();
    } catch (const std::exception& error) {
        log(LogLevel::Error, error.what());
        return EXIT_FAILURE;
    }
}

}
