#include "WakeAlarmMac.h"

#import <Foundation/Foundation.h>
#include <IOKit/pwr_mgt/IOPMLib.h>

namespace Tinkra::WakeHelper {

namespace {

// Under this name our wakes lie beside those of others.
NSString* _Nonnull const kOwner = @"co.calendarmurkel.wakehelper";

bool clearOurWakes()
{
    bool isClear = true;
    NSArray<NSDictionary*>* events = (__bridge_transfer NSArray*)IOPMCopyScheduledPowerEvents();
    for (NSDictionary* event in events) {
        NSDate* time = [event objectForKey:@kIOPMPowerEventTimeKey];
        NSString* type = [event objectForKey:@kIOPMPowerEventTypeKey];
        if (time == nil || type == nil || ![kOwner isEqual:[event objectForKey:@kIOPMPowerEventAppNameKey]])
            continue;
        const auto result = IOPMCancelScheduledPowerEvent(
            (__bridge CFDateRef)time, (__bridge CFStringRef)kOwner, (__bridge CFStringRef)type);
        isClear = isClear && result == kIOReturnSuccess;
    }
    return isClear;
}

}

bool setWakeAlarm(std::optional<std::int64_t> seconds)
{
    @autoreleasepool {
        const bool isClear = clearOurWakes();
        if (!seconds)
            return isClear;
        NSDate* time = [NSDate dateWithTimeIntervalSince1970:static_cast<NSTimeInterval>(*seconds)];
        const auto result = IOPMSchedulePowerEvent(
            (__bridge CFDateRef)time, (__bridge CFStringRef)kOwner, (__bridge CFStringRef) @kIOPMAutoWake);
        return isClear && result == kIOReturnSuccess;
    }
}

}
