#pragma once

// Written for the checks from public documentation: what our sources use of this framework, and no more.

using CFStringRef = const struct __attribute__((objc_bridge(NSString))) __CFString*;
using CFDateRef = const struct __attribute__((objc_bridge(NSDate))) __CFDate*;
using CFArrayRef = const struct __attribute__((objc_bridge(NSArray))) __CFArray*;
