#pragma once

/// What the application is called on the session bus.
namespace Tinkra::System::ApplicationNames {

inline constexpr auto kBusName = "co.calendarmurkel.Tinkra";
inline constexpr auto kObjectPath = "/co/calendarmurkel/Tinkra";
inline constexpr auto kInterface = "co.calendarmurkel.Tinkra1"; ///< TestAlarm()

/// Desktop Entry Specification 1.5, "D-Bus Activation": Activate(a{sv}), Open(as, a{sv}), ActivateAction(s,
/// av, a{sv}).
inline constexpr auto kDesktopInterface = "org.freedesktop.Application";

}
