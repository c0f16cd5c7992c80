#include "TinkraSystemMac/PowerAssertionsMac.h"

#include "TinkraSystemMac/FoundationValues.h"

#include <IOKit/pwr_mgt/IOPMLib.h>

namespace Tinkra::System {

std::optional<PowerAssertionID> PowerAssertionsMac::create(
    std::string_view type, std::uint32_t level, std::string_view name)
{
    NSString* nativeType = stringFrom(type);
    NSString* nativeName = stringFrom(name);
    IOPMAssertionID assertion = kIOPMNullAssertionID;
    const auto result = IOPMAssertionCreateWithName(
        (__bridge CFStringRef)nativeType, level, (__bridge CFStringRef)nativeName, &assertion);
    return result == kIOReturnSuccess ? std::optional(assertion) : std::nullopt;
}

void PowerAssertionsMac::release(PowerAssertionID assertion)
{
    IOPMAssertionRelease(assertion); // an unknown one is an error that nobody asks for
}

}
