#pragma once

// Written for the checks from public documentation: what our sources use of this framework, and no more.

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

using UNAuthorizationOptions = NSUInteger;
enum __attribute__((flag_enum)) : UNAuthorizationOptions {
    UNAuthorizationOptionBadge = 1,
    UNAuthorizationOptionSound = 2,
    UNAuthorizationOptionAlert = 4,
};

using UNNotificationPresentationOptions = NSUInteger;
enum __attribute__((flag_enum)) : UNNotificationPresentationOptions {
    UNNotificationPresentationOptionBadge = 1,
    UNNotificationPresentationOptionSound = 2,
    UNNotificationPresentationOptionList = 8,
    UNNotificationPresentationOptionBanner = 16,
};

enum UNAuthorizationStatus : NSInteger {
    UNAuthorizationStatusNotDetermined = 0,
    UNAuthorizationStatusDenied = 1,
    UNAuthorizationStatusAuthorized = 2,
    UNAuthorizationStatusProvisional = 3,
};

enum UNNotificationInterruptionLevel : NSUInteger {
    UNNotificationInterruptionLevelPassive = 0,
    UNNotificationInterruptionLevelActive = 1,
    UNNotificationInterruptionLevelTimeSensitive = 2,
    UNNotificationInterruptionLevelCritical = 3,
};

@interface UNNotificationSound : NSObject
@property (class, readonly, copy) UNNotificationSound* defaultSound;
@end

@interface UNNotificationContent : NSObject
@property (readonly, copy) NSString* title;
@property (readonly, copy) NSString* body;
@property (readonly, copy, nullable) UNNotificationSound* sound;
@property (readonly) UNNotificationInterruptionLevel interruptionLevel;
@property (readonly, copy) NSDictionary* userInfo;
@end

@interface UNMutableNotificationContent : UNNotificationContent
@property (copy) NSString* title;
@property (copy) NSString* body;
@property (copy, nullable) UNNotificationSound* sound;
@property UNNotificationInterruptionLevel interruptionLevel;
@property (copy) NSDictionary* userInfo;
@end

@interface UNNotificationTrigger : NSObject
@property (readonly) BOOL repeats;
@end

@interface UNCalendarNotificationTrigger : UNNotificationTrigger
+ (instancetype)triggerWithDateMatchingComponents:(NSDateComponents*)components repeats:(BOOL)repeats;
@property (readonly, copy) NSDateComponents* dateComponents;
@end

@interface UNNotificationRequest : NSObject
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(nullable UNNotificationTrigger*)trigger;
@property (readonly, copy) NSString* identifier;
@property (readonly, copy) UNNotificationContent* content;
@property (readonly, copy, nullable) UNNotificationTrigger* trigger;
@end

@interface UNNotification : NSObject
@property (readonly, copy) UNNotificationRequest* request;
@end

@interface UNNotificationResponse : NSObject
@property (readonly, copy) UNNotification* notification;
@property (readonly, copy) NSString* actionIdentifier;
@end

@interface UNNotificationSettings : NSObject
@property (readonly) UNAuthorizationStatus authorizationStatus;
@end

@class UNUserNotificationCenter;

@protocol UNUserNotificationCenterDelegate <NSObject>
@optional
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))completionHandler;
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)())completionHandler;
@end

@interface UNUserNotificationCenter : NSObject
+ (UNUserNotificationCenter*)currentNotificationCenter;
@property (weak, nullable) id<UNUserNotificationCenterDelegate> delegate;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError* _Nullable error))completionHandler;
- (void)getNotificationSettingsWithCompletionHandler:(void (^)(
                                                         UNNotificationSettings* settings))completionHandler;
- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(nullable void (^)(NSError* _Nullable error))completionHandler;
- (void)getPendingNotificationRequestsWithCompletionHandler:
    (void (^)(NSArray<UNNotificationRequest*>* requests))completionHandler;
- (void)removePendingNotificationRequestsWithIdentifiers:(NSArray<NSString*>*)identifiers;
@end

#pragma clang assume_nonnull end
