// The numbers that we state in portable code or believe from documentation, held against the system's
// headers: this file compiles on a Mac or they are wrong. It emits nothing.

#include "TinkraSystem/AudioDevice.h"
#include "TinkraSystem/Desktop/OverlayPanel.h"
#include "TinkraSystem/EventStore.h"
#include "TinkraSystem/NotificationCenter.h"
#include "TinkraSystem/NotificationCenterDelegate.h"
#include "TinkraSystem/PowerAssertions.h"
#include "TinkraSystem/ServiceStatus.h"

#import <AppKit/AppKit.h>
#import <CoreAudio/CoreAudio.h>
#import <EventKit/EventKit.h>
#import <Foundation/Foundation.h>
#include <IOKit/pwr_mgt/IOPMLib.h>
#import <ServiceManagement/ServiceManagement.h>
#import <UserNotifications/UserNotifications.h>

namespace Tinkra::System {

namespace {

template <typename Left, typename Right> constexpr bool same(Left left, Right right)
{
    return static_cast<long long>(left) == static_cast<long long>(right);
}

}

static_assert(same(EKEntityTypeEvent, 0));
static_assert(same(EKAuthorizationStatusNotDetermined, CalendarAuthorization::NotDetermined));
static_assert(same(EKAuthorizationStatusRestricted, CalendarAuthorization::Restricted));
static_assert(same(EKAuthorizationStatusDenied, CalendarAuthorization::Denied));
static_assert(same(EKAuthorizationStatusFullAccess, CalendarAuthorization::FullAccess));
static_assert(same(EKAuthorizationStatusWriteOnly, CalendarAuthorization::WriteOnly));

static_assert(same(UNAuthorizationOptionBadge, BadgeOption));
static_assert(same(UNAuthorizationOptionSound, SoundOption));
static_assert(same(UNAuthorizationOptionAlert, AlertOption));
static_assert(same(UNNotificationPresentationOptionBadge, BadgePresentation));
static_assert(same(UNNotificationPresentationOptionSound, SoundPresentation));
static_assert(same(UNNotificationPresentationOptionList, ListPresentation));
static_assert(same(UNNotificationPresentationOptionBanner, BannerPresentation));
static_assert(same(UNAuthorizationStatusNotDetermined, NotificationAuthorization::NotDetermined));
static_assert(same(UNAuthorizationStatusDenied, NotificationAuthorization::Denied));
static_assert(same(UNAuthorizationStatusAuthorized, NotificationAuthorization::Authorized));
static_assert(same(UNAuthorizationStatusProvisional, NotificationAuthorization::Provisional));
static_assert(same(UNNotificationInterruptionLevelPassive, InterruptionLevel::Passive));
static_assert(same(UNNotificationInterruptionLevelActive, InterruptionLevel::Active));
static_assert(same(UNNotificationInterruptionLevelTimeSensitive, InterruptionLevel::TimeSensitive));
static_assert(same(UNNotificationInterruptionLevelCritical, InterruptionLevel::Critical));

static_assert(same(NSUTF8StringEncoding, 4));
static_assert(same(NSCalendarUnitYear, 4));
static_assert(same(NSCalendarUnitMonth, 8));
static_assert(same(NSCalendarUnitDay, 16));
static_assert(same(NSCalendarUnitHour, 32));
static_assert(same(NSCalendarUnitMinute, 64));
static_assert(same(NSCalendarUnitSecond, 128));

static_assert(same(NSWindowStyleMaskBorderless, 0));
static_assert(same(NSWindowStyleMaskNonactivatingPanel, kNonactivatingPanelStyle));
static_assert(same(NSBackingStoreBuffered, 2));
static_assert(same(NSWindowCollectionBehaviorCanJoinAllSpaces, CanJoinAllSpaces));
static_assert(same(NSWindowCollectionBehaviorStationary, Stationary));
static_assert(same(NSWindowCollectionBehaviorIgnoresCycle, IgnoresCycle));
static_assert(same(NSWindowCollectionBehaviorFullScreenAuxiliary, FullScreenAuxiliary));
static_assert(same(CanJoinAllSpaces | Stationary | IgnoresCycle | FullScreenAuxiliary, 337));
static_assert(same(NSScreenSaverWindowLevel, kScreenSaverWindowLevel));

static_assert(same(kAudioObjectUnknown, 0));
static_assert(same(kAudioObjectSystemObject, 1));
static_assert(same(kAudioHardwareNoError, 0));
static_assert(same(kAudioObjectPropertyScopeGlobal, 0x676c6f62));
static_assert(same(kAudioDevicePropertyScopeOutput, 0x6f757470));
static_assert(same(kAudioObjectPropertyElementMain, AudioElement::Main));
static_assert(same(kAudioHardwarePropertyDefaultOutputDevice, 0x644f7574));
static_assert(same(kAudioDevicePropertyVolumeScalar, 0x766f6c6d));
static_assert(same(kAudioDevicePropertyMute, 0x6d757465));

static_assert(same(SMAppServiceStatusNotRegistered, ServiceStatus::NotRegistered));
static_assert(same(SMAppServiceStatusEnabled, ServiceStatus::Enabled));
static_assert(same(SMAppServiceStatusRequiresApproval, ServiceStatus::RequiresApproval));
static_assert(same(SMAppServiceStatusNotFound, ServiceStatus::NotFound));

static_assert(same(kIOReturnSuccess, 0));
static_assert(same(kIOPMNullAssertionID, kNoPowerAssertion));
static_assert(same(kIOPMAssertionLevelOn, kPowerAssertionLevelOn));

}
