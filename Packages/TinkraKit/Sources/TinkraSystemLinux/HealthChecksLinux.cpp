#include "TinkraSystemLinux/HealthChecksLinux.h"

#include "NotificationDaemonProtocol/Names.h"
#include "TinkraSystemLinux/FolderEventStore.h"
#include "TinkraSystemLinux/LocalHealthChecks.h"
#include "TinkraSystemLinux/MessageBus.h"

#include <algorithm>
#include <map>

namespace Tinkra::System {

namespace Protocol = NotificationDaemonProtocol;

namespace {

using Level = HealthFinding::Level;
using Properties = std::map<std::string, sdbus::Variant>;

constexpr std::chrono::milliseconds limit{3000};

// The daemon may have to be started, and to mend its store, first.
constexpr std::chrono::milliseconds daemonLimit{6000};

BusMethod busMethod(const char* name)
{
    return {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", name};
}

BusMethod daemonMethod(const char* name)
{
    return {Protocol::kBusName, Protocol::kObjectPath, Protocol::kInterface, name};
}

BusMethod serverMethod(const char* name)
{
    return {"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
        "org.freedesktop.Notifications", name};
}

BusMethod managerMethod(const char* name)
{
    return {
        "org.freedesktop.systemd1", "/org/freedesktop/systemd1", "org.freedesktop.systemd1.Manager", name};
}

template <typename Value> Value valueOf(const Properties& properties, const std::string& key)
{
    const auto found = properties.find(key);
    return found != properties.end() && found->second.containsValueOfType<Value>()
        ? found->second.get<Value>()
        : Value();
}

bool names(const sdbus::Error& error, std::string_view name)
{
    return error.getName() == name;
}

HealthFinding describeUnreachableDaemon(const sdbus::Error& error)
{
    const std::string subject = "Notification service";
    if (names(error, "org.freedesktop.DBus.Error.ServiceUnknown")
        || names(error, "org.freedesktop.DBus.Error.NameHasNoOwner"))
        return {subject, Level::Failure,
            "Alarms are not armed: the session bus does not know the notification service.",
            std::string("Install Calendar Murkel so that dbus-1/services/") + Protocol::kBusName
                + ".service lies below one of the folders in XDG_DATA_DIRS, then log in again."};
    if (error.getName().starts_with("org.freedesktop.DBus.Error.Spawn"))
        return {subject, Level::Failure,
            "Alarms are not armed: the session bus could not start the notification service ("
                + error.getMessage() + ").",
            std::string("Reinstall Calendar Murkel; the line Exec= in dbus-1/services/") + Protocol::kBusName
                + ".service must name the program tinkra-notifierd."};
    return {subject, Level::Failure,
        "Alarms are not armed: the notification service does not answer (" + error.getMessage() + ").",
        "End the process tinkra-notifierd; the next call starts it anew."};
}

}

HealthChecksLinux::HealthChecksLinux(std::shared_ptr<MessageBus> sessionBus,
    std::shared_ptr<MessageBus> systemBus, std::shared_ptr<FolderEventStore> calendars)
    : m_sessionBus(std::move(sessionBus))
    , m_systemBus(std::move(systemBus))
    , m_calendars(std::move(calendars))
{
}

Task<std::vector<HealthFinding>> HealthChecksLinux::run()
{
    std::vector<HealthFinding> findings;
    findings.push_back(co_await sessionBus());
    if (findings.back().level == Level::Ok) {
        findings.push_back(co_await notificationService());
        if (findings.back().level == Level::Ok) {
            for (auto& finding : co_await notificationStore())
                findings.push_back(std::move(finding));
        }
        findings.push_back(co_await notificationServer());
        findings.push_back(co_await serviceManager());
    }
    findings.push_back(lookAtLoginEntry());
    for (auto& finding : co_await calendarFolders())
        findings.push_back(std::move(finding));
    findings.push_back(lookAtPreferences());
    findings.push_back(lookAtChangeNotices());
    findings.push_back(lookAtTimeZone());
    findings.push_back(lookAtDisplay());
    findings.push_back(lookAtSound());
    findings.push_back(co_await loginManager());
    co_return findings;
}

Task<HealthFinding> HealthChecksLinux::sessionBus()
{
    const std::string subject = "Session bus";
    try {
        co_await m_sessionBus->call<std::string>(busMethod("GetId"), limit);
        co_return HealthFinding{subject, Level::Ok, "The session bus answers.", ""};
    } catch (const sdbus::Error& error) {
        co_return HealthFinding{subject, Level::Failure,
            "Alarms are not armed: no session bus answers (" + error.getMessage() + ").",
            "Log in to a desktop session, or run the command under \"dbus-run-session\"."};
    }
}

Task<HealthFinding> HealthChecksLinux::notificationService()
{
    const auto bus = co_await sessionBus();
    if (bus.level != Level::Ok)
        co_return bus;
    const std::string subject = "Notification service";
    Properties status;
    try {
        status = co_await m_sessionBus->call<Properties>(daemonMethod("Status"), daemonLimit);
    } catch (const sdbus::Error& error) {
        co_return describeUnreachableDaemon(error);
    }
    const auto pending = valueOf<std::uint32_t>(status, "pending");
    co_return HealthFinding{subject, Level::Ok,
        "tinkra-notifierd " + valueOf<std::string>(status, "version") + " runs; " + std::to_string(pending)
            + (pending == 1 ? " alarm is pending." : " alarms are pending."),
        ""};
}

Task<std::vector<HealthFinding>> HealthChecksLinux::notificationStore()
{
    const std::string subject = "Alarm store";
    std::vector<HealthFinding> findings;
    Properties status;
    try {
        status = co_await m_sessionBus->call<Properties>(daemonMethod("Status"), daemonLimit);
    } catch (const sdbus::Error& error) {
        findings.push_back(describeUnreachableDaemon(error));
        co_return findings;
    }
    if (valueOf<bool>(status, "inMemory"))
        findings.push_back({subject, Level::Failure,
            "Alarms are kept in memory only and are lost with the session ("
                + valueOf<std::string>(status, "inMemoryReason") + ").",
            "Make " + notificationStoreFolder() + " a folder of yours with free space, then log in again."});
    if (valueOf<bool>(status, "storeWasReset"))
        findings.push_back({subject, Level::Warning,
            "The file of the alarms was damaged and begun anew; some alarms may be missing.",
            "Run \"tinkra sync\" to arm them again."});
    if (const auto quarantined = valueOf<std::vector<std::string>>(status, "quarantined");
        !quarantined.empty())
        findings.push_back({subject, Level::Warning,
            std::to_string(quarantined.size()) + " alarms were set aside because they made the service fail.",
            "Please report this, with the file in " + notificationStoreFolder() + "."});
    if (findings.empty())
        findings.push_back({subject, Level::Ok, "Alarms are kept on the disk.", ""});
    co_return findings;
}

Task<HealthFinding> HealthChecksLinux::notificationServer()
{
    const std::string subject = "Notification server";
    try {
        const auto name =
            co_await m_sessionBus->call<std::string>(serverMethod("GetServerInformation"), limit);
        const auto capabilities =
            co_await m_sessionBus->call<std::vector<std::string>>(serverMethod("GetCapabilities"), limit);
        if (std::ranges::find(capabilities, "body") == capabilities.end())
            co_return HealthFinding{subject, Level::Warning,
                name + " shows no text below a notification's heading, so that it does not name the meeting.",
                "Use another notification server."};
        co_return HealthFinding{subject, Level::Ok, name + " shows notifications.", ""};
    } catch (const sdbus::Error& error) {
        co_return HealthFinding{subject, Level::Failure,
            "Nothing can show a notification: no notification server answers (" + error.getMessage() + ").",
            "Start your desktop's notification server, or install one, for example the package dunst."};
    }
}

Task<HealthFinding> HealthChecksLinux::serviceManager()
{
    const std::string subject = "Service manager";
    const std::string unit = "tinkra-notifierd.service";
    try {
        if (!co_await m_sessionBus->call<bool>(
                busMethod("NameHasOwner"), limit, std::string("org.freedesktop.systemd1")))
            co_return HealthFinding{subject, Level::Ok,
                "This session has no systemd; the session bus starts the notification service itself.", ""};
        const auto state =
            co_await m_sessionBus->call<std::string>(managerMethod("GetUnitFileState"), limit, unit);
        if (state == "masked")
            co_return HealthFinding{subject, Level::Failure,
                unit + " is masked, so that nothing can start it.",
                "Run \"systemctl --user unmask " + unit + "\"."};
        co_return HealthFinding{subject, Level::Ok, "systemd knows " + unit + " (" + state + ").", ""};
    } catch (const sdbus::Error& error) {
        co_return HealthFinding{subject, Level::Warning,
            "systemd does not know " + unit + " (" + error.getMessage()
                + "); nothing starts the service again after a crash.",
            "Install Calendar Murkel, then run \"systemctl --user daemon-reload\"."};
    }
}

Task<std::vector<HealthFinding>> HealthChecksLinux::calendarFolders()
{
    const std::string subject = "Calendar folders";
    std::vector<HealthFinding> findings;
    FolderStoreStatus status;
    try {
        status = co_await m_calendars->examine();
    } catch (const std::exception& error) {
        findings.push_back({subject, Level::Failure, error.what(), "Make the folder readable."});
        co_return findings;
    }
    for (const auto& root : status.roots) {
        if (!root.isReachable)
            findings.push_back({subject, Level::Warning, root.path + " is missing, or is no folder.",
                "Put calendars there, as ACCOUNT/CALENDAR/*.ics, or name other folders in "
                "TINKRA_CALENDARS."});
        else if (!root.trouble.empty())
            findings.push_back({subject, Level::Failure, root.path + " cannot be read: " + root.trouble + ".",
                "Make the folder readable; until then the alarms stay as they are."});
        else
            findings.push_back({subject, Level::Ok, root.path + " can be read.", ""});
    }
    for (const auto& notice : status.notices)
        findings.push_back(
            {"Calendar files", Level::Warning, notice, "Correct the file, or ask whoever wrote it."});
    co_return findings;
}

Task<HealthFinding> HealthChecksLinux::loginManager()
{
    const std::string subject = "Login manager";
    try {
        if (co_await m_systemBus->call<bool>(
                busMethod("NameHasOwner"), limit, std::string("org.freedesktop.login1")))
            co_return HealthFinding{
                subject, Level::Ok, "logind reports when the machine wakes from sleep.", ""};
    } catch (const sdbus::Error&) {
        // No system bus is no logind either.
        co_return HealthFinding{subject, Level::Warning, "There is no system bus, and so no logind.",
            "Alarms work without it; the machine cannot be kept awake for them."};
    }
    co_return HealthFinding{subject, Level::Warning, "logind does not run.",
        "Alarms work without it; the machine cannot be kept awake for them."};
}

Task<std::vector<std::string>> HealthChecksLinux::filesLeftOut()
{
    try {
        auto status = co_await m_calendars->status();
        co_return std::move(status.leftOut);
    } catch (const std::exception&) {
        // Whoever asks for events hears of it.
        co_return std::vector<std::string>{};
    }
}

Task<> HealthChecksLinux::acknowledgeRearmed()
{
    try {
        co_await m_sessionBus->call(daemonMethod("AcknowledgeReset"), limit);
    } catch (const sdbus::Error&) {
        // The mark stays, and the next pass that succeeds tries again.
        co_return;
    }
}

}
