#pragma once

// Written for the checks from public documentation: what our sources use of this framework, and no more.

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

enum SMAppServiceStatus : NSInteger {
    SMAppServiceStatusNotRegistered = 0,
    SMAppServiceStatusEnabled = 1,
    SMAppServiceStatusRequiresApproval = 2,
    SMAppServiceStatusNotFound = 3,
};

__attribute__((availability(macos, introduced = 13.0)))
@interface SMAppService : NSObject
@property (class, readonly) SMAppService* mainAppService;
+ (instancetype)daemonServiceWithPlistName:(NSString*)plistName;
- (BOOL)registerAndReturnError:(NSError* _Nullable __autoreleasing* _Nullable)error;
- (BOOL)unregisterAndReturnError:(NSError* _Nullable __autoreleasing* _Nullable)error;
@property (readonly) SMAppServiceStatus status;
@end

#pragma clang assume_nonnull end
