#pragma once

/// What the daemon is called on the session bus. The interface itself is
/// co.calendarmurkel.NotificationCenter1.xml.
namespace Tinkra::NotificationDaemonProtocol {

inline constexpr auto kBusName = "co.calendarmurkel.NotificationCenter";
inline constexpr auto kObjectPath = "/co/calendarmurkel/NotificationCenter";
inline constexpr auto kInterface = "co.calendarmurkel.NotificationCenter1";

namespace Error {
inline constexpr auto kInvalidArgs = "org.freedesktop.DBus.Error.InvalidArgs";
inline constexpr auto kAccessDenied = "org.freedesktop.DBus.Error.AccessDenied";
inline constexpr auto kLimitsExceeded = "org.freedesktop.DBus.Error.LimitsExceeded";
inline constexpr auto kIOError = "org.freedesktop.DBus.Error.IOError";
inline constexpr auto kNoMemory = "org.freedesktop.DBus.Error.NoMemory";
inline constexpr auto kFailed = "org.freedesktop.DBus.Error.Failed";
}

}
