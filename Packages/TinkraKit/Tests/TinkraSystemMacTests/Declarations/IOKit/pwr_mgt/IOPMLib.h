#pragma once

// Written for the checks from public documentation: what our sources use of this framework, and no more.

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>

#define kIOPMAutoWake "wake"
#define kIOPMPowerEventTimeKey "time"
#define kIOPMPowerEventAppNameKey "scheduledby"
#define kIOPMPowerEventTypeKey "eventtype"

#pragma clang assume_nonnull begin

using IOReturn = int;
using IOPMAssertionID = std::uint32_t;
using IOPMAssertionLevel = std::uint32_t;

enum : IOReturn {
    kIOReturnSuccess = 0,
};

enum : IOPMAssertionLevel {
    kIOPMAssertionLevelOn = 255,
};

enum : IOPMAssertionID {
    kIOPMNullAssertionID = 0,
};

extern "C" {
IOReturn IOPMAssertionCreateWithName(
    CFStringRef type, IOPMAssertionLevel level, CFStringRef name, IOPMAssertionID* assertion);
IOReturn IOPMAssertionRelease(IOPMAssertionID assertion);
IOReturn IOPMSchedulePowerEvent(CFDateRef time, CFStringRef _Nullable owner, CFStringRef type);
IOReturn IOPMCancelScheduledPowerEvent(CFDateRef time, CFStringRef _Nullable owner, CFStringRef type);
CFArrayRef _Nullable IOPMCopyScheduledPowerEvents() __attribute__((cf_returns_retained));
}

#pragma clang assume_nonnull end
