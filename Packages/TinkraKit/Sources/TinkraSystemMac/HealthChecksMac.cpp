#include "TinkraSystemMac/HealthChecksMac.h"

#include <utility>

namespace Tinkra::System {

namespace {

constexpr auto kCalendars = "Calendars";
constexpr auto kNotifications = "Notifications";
constexpr auto kAllowCalendars =
    "Give Calendar Murkel full access in System Settings, Privacy & Security, Calendars.";
constexpr auto kAllowNotifications = "Allow them in System Settings, Notifications, Calendar Murkel.";

HealthFinding findingAbout(CalendarAuthorization authorization)
{
    using enum HealthFinding::Level;
    switch (authorization) {
    case CalendarAuthorization::FullAccess:
        return {kCalendars, Ok, "Calendars may be read.", ""};
    case CalendarAuthorization::NotDetermined:
        return {kCalendars, Warning, "Calendars may not be read yet.",
            "Open Calendar Murkel and give it access to your calendars."};
    case CalendarAuthorization::Restricted:
        return {kCalendars, Failure, "This Mac is set up so that calendars may not be read.",
            "Ask whoever looks after this Mac."};
    case CalendarAuthorization::Denied:
        return {kCalendars, Failure, "Access to calendars was denied.", kAllowCalendars};
    case CalendarAuthorization::WriteOnly:
        return {kCalendars, Failure, "Events may be added, but not read.", kAllowCalendars};
    }
    return {kCalendars, Warning, "The access to calendars is of an unknown kind.", kAllowCalendars};
}

HealthFinding findingAbout(NotificationAuthorization authorization)
{
    using enum HealthFinding::Level;
    switch (authorization) {
    case NotificationAuthorization::Authorized:
        return {kNotifications, Ok, "Notifications may be shown.", ""};
    case NotificationAuthorization::NotDetermined:
        return {kNotifications, Warning, "Notifications may not be shown yet.",
            "Open Calendar Murkel and let it send notifications."};
    case NotificationAuthorization::Denied:
        return {kNotifications, Failure, "Notifications were denied.", kAllowNotifications};
    case NotificationAuthorization::Provisional:
    case NotificationAuthorization::Ephemeral:
        return {kNotifications, Warning, "Notifications arrive quietly.", kAllowNotifications};
    }
    return {kNotifications, Warning, "The permission to notify is of an unknown kind.", kAllowNotifications};
}

}

HealthChecksMac::HealthChecksMac(
    std::shared_ptr<EventStore> eventStore, std::shared_ptr<NotificationCenter> notificationCenter)
    : m_eventStore(std::move(eventStore))
    , m_notificationCenter(std::move(notificationCenter))
{
}

Task<std::vector<HealthFinding>> HealthChecksMac::run()
{
    std::vector<HealthFinding> findings;
    findings.push_back(calendars());
    findings.push_back(co_await notificationService());
    co_return findings;
}

Task<HealthFinding> HealthChecksMac::notificationService()
{
    co_return findingAbout(co_await m_notificationCenter->authorizationStatus());
}

// The system reads calendars, not files of ours.
Task<std::vector<std::string>> HealthChecksMac::filesLeftOut()
{
    co_return std::vector<std::string>{};
}

// The system loses no request, so there is nothing to acknowledge.
Task<> HealthChecksMac::acknowledgeRearmed()
{
    co_return;
}

HealthFinding HealthChecksMac::calendars()
{
    return findingAbout(m_eventStore->authorizationStatus());
}

}
