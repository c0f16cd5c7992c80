#include "TinkraSystemLinux/LocalHealthChecks.h"

#include "TinkraSystemLinux/AudioDeviceLinux.h"
#include "TinkraSystemLinux/DefaultsLinux.h"
#include "TinkraSystemLinux/FileDescriptor.h"
#include "TinkraSystemLinux/OverlayRoute.h"
#include "TinkraSystemLinux/SoundLibraryLinux.h"
#include "TinkraSystemLinux/XdgDirectories.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string_view>

namespace Tinkra::System {

namespace {

using Level = HealthFinding::Level;
using std::filesystem::path;

constexpr auto loginEntryName = "co.calendarmurkel.NotificationCenter.desktop";

// A watch for each calendar folder; this is what distributions give at least.
constexpr long fewWatches = 8192;

constexpr auto setZone =
    "Run \"timedatectl set-timezone\" with the name of your zone; the package tzdata holds the zones.";
constexpr auto correctVariable = "Correct the variable TZ, or install the package tzdata.";

bool isReadable(const path& file)
{
    return ::access(file.c_str(), R_OK) == 0;
}

bool hidesEntry(const path& entry)
{
    std::ifstream file(entry);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("Hidden=true"))
            return true;
    }
    return false;
}

HealthFinding lookAtZoneFile(const path& file, const std::string& name, const std::string& remedy)
{
    const std::string subject = "Time zone";
    if (isReadable(file))
        return {subject, Level::Ok, "The time zone is " + name + ".", ""};
    return {subject, Level::Warning, "The time zone " + name + " is not known here; times are taken as UTC.",
        remedy};
}

}

HealthFinding lookAtLoginEntry()
{
    const std::string subject = "Login entry";
    auto folders = xdgConfigDirectories();
    folders.insert(folders.begin(), xdgConfigHome());
    for (const auto& folder : folders) {
        const auto entry = folder / "autostart" / loginEntryName;
        if (!isReadable(entry))
            continue;
        if (hidesEntry(entry))
            return {subject, Level::Warning,
                "The notification service is not started at login: " + entry.string() + " is switched off.",
                "Remove the line Hidden=true from it."};
        return {subject, Level::Ok, "The notification service is started at login.", ""};
    }
    return {subject, Level::Warning,
        "The notification service is not started at login; after a restart no alarm rings until something "
        "asks for it.",
        std::string("Install Calendar Murkel, or copy ") + loginEntryName
            + " from where it is installed into " + (xdgConfigHome() / "autostart").string() + "."};
}

HealthFinding lookAtPreferences()
{
    const std::string subject = "Preferences";
    const auto folder = DefaultsLinux::userDirectory();
    std::error_code error;
    if (!std::filesystem::exists(folder, error))
        return {subject, Level::Ok, "Nothing has been saved yet.", ""};
    if (!std::filesystem::is_directory(folder, error) || ::access(folder.c_str(), R_OK | W_OK | X_OK) != 0)
        return {subject, Level::Failure, "Nothing can be saved in " + folder.string() + ".",
            "Move away what is there, or make it a folder that you own and may write (chown, chmod)."};
    DefaultsLinux preferences(folder);
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        const auto name = entry.path().filename().string();
        if (!name.starts_with('.') && !preferences.data(name))
            return {subject, Level::Failure,
                entry.path().string() + " is no readable file of at most 1 MB and counts as missing.",
                "Move it away; the next change saves it anew."};
    }
    return {subject, Level::Ok, "Preferences are kept in " + folder.string() + ".", ""};
}

HealthFinding lookAtChangeNotices()
{
    const std::string subject = "Change notices";
    const FileDescriptor watcher(::inotify_init1(IN_CLOEXEC));
    if (!watcher)
        return {subject, Level::Warning,
            std::string("Changes of calendar files are not reported (") + std::strerror(errno)
                + "); they are found when alarms are next computed.",
            "Raise fs.inotify.max_user_instances with sysctl."};
    long watches = 0;
    std::ifstream("/proc/sys/fs/inotify/max_user_watches") >> watches;
    if (watches < fewWatches)
        return {subject, Level::Warning,
            "Only " + std::to_string(watches) + " folders can be watched for changes.",
            "Raise fs.inotify.max_user_watches with sysctl."};
    return {subject, Level::Ok, "Changes of calendar files are reported by inotify.", ""};
}

HealthFinding lookAtTimeZone()
{
    const char* variable = std::getenv("TZ");
    if (variable == nullptr) {
        const path local = "/etc/localtime";
        std::error_code error;
        const auto target = std::filesystem::canonical(local, error).string();
        if (error)
            return {"Time zone", Level::Warning,
                "The time zone of this machine is not set; times are taken as UTC.", setZone};
        const std::string_view folder = "/zoneinfo/";
        const auto at = target.find(folder);
        return lookAtZoneFile(
            local, at == std::string::npos ? target : target.substr(at + folder.size()), setZone);
    }
    const std::string name = *variable == ':' ? variable + 1 : variable;
    if (name.empty())
        return {"Time zone", Level::Ok, "The time zone is UTC.", ""};
    if (path(name).is_absolute())
        return lookAtZoneFile(name, name, correctVariable);
    // A rule such as CET-1CEST needs no file; it has digits, and only such zones as Etc/GMT+1 have them too.
    const bool isRule =
        name.find('/') == std::string::npos && name.find_first_of("0123456789") != std::string::npos;
    if (isRule)
        return {"Time zone", Level::Ok, "The time zone is the rule " + name + ".", ""};
    const char* database = std::getenv("TZDIR");
    return lookAtZoneFile(
        path(database != nullptr ? database : "/usr/share/zoneinfo") / name, name, correctVariable);
}

HealthFinding lookAtDisplay()
{
    const std::string subject = "Display";
    switch (findOverlayRoute()) {
    case OverlayRoute::X11:
        return {
            subject, Level::Ok, "Alarms show above everything, as an override-redirect window on X11.", ""};
    case OverlayRoute::LayerShell:
        return {subject, Level::Ok, "Alarms show above everything, on the compositor's overlay layer.", ""};
    case OverlayRoute::XWayland:
        return {subject, Level::Ok,
            "Alarms show above everything, through XWayland, since this compositor has no layers for others.",
            ""};
    case OverlayRoute::PlainWayland:
        return {subject, Level::Warning, "A full-screen program may cover an alarm on this compositor.",
            "Install XWayland, for example the package xwayland, and log in again."};
    case OverlayRoute::None:
        break;
    }
    return {subject, Level::Warning,
        "There is no display, so that no banner shows; notifications do not need one.",
        "Run the command in a desktop session."};
}

HealthFinding lookAtSound()
{
    const std::string subject = "Sound";
    if (!AudioDeviceLinux().defaultOutputDevice())
        return {subject, Level::Warning,
            "Alarms show, but are not heard: no sound server with a device answers.",
            "Start your desktop's sound server, PipeWire or PulseAudio, and see that a device is connected."};
    if (!SoundLibraryLinux().sound("Glass"))
        return {subject, Level::Warning, "Alarms show, but are not heard: their sounds are not installed.",
            "Install Calendar Murkel, so that tinkra/sounds lies below one of the folders in XDG_DATA_DIRS."};
    return {subject, Level::Ok, "Alarms are heard.", ""};
}

std::string notificationStoreFolder()
{
    return (xdgStateHome() / "tinkra").string();
}

}
