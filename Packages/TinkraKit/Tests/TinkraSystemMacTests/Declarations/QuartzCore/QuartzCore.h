#pragma once

// Written for the checks from public documentation: what our sources use of this framework, and no more.

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

using CAMediaTimingFunctionName = NSString*;

extern "C" CAMediaTimingFunctionName const kCAMediaTimingFunctionEaseIn;
extern "C" CAMediaTimingFunctionName const kCAMediaTimingFunctionEaseOut;

@interface CAMediaTimingFunction : NSObject
+ (instancetype)functionWithName:(CAMediaTimingFunctionName)name;
@end

#pragma clang assume_nonnull end
