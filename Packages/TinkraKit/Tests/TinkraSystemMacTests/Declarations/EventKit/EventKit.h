#pragma once

// Written for the checks from public documentation: what our sources use of this framework, and no more.

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

enum EKEntityType : NSUInteger {
    EKEntityTypeEvent = 0,
};

enum EKAuthorizationStatus : NSInteger {
    EKAuthorizationStatusNotDetermined = 0,
    EKAuthorizationStatusRestricted = 1,
    EKAuthorizationStatusDenied = 2,
    EKAuthorizationStatusFullAccess __attribute__((availability(macos, introduced = 14.0))) = 3,
    EKAuthorizationStatusWriteOnly __attribute__((availability(macos, introduced = 14.0))) = 4,
};

@interface EKObject : NSObject
@end

@interface EKSource : EKObject
@property (readonly) NSString* title;
@end

@interface EKCalendar : EKObject
@property (readonly) NSString* calendarIdentifier;
@property (copy) NSString* title;
@property (strong, null_unspecified) EKSource* source;
@property (nonatomic, null_unspecified) CGColorRef CGColor;
@end

@interface EKCalendarItem : EKObject
@property (readonly) NSString* calendarItemIdentifier;
@property (strong, null_unspecified) EKCalendar* calendar;
@property (copy, null_unspecified) NSString* title;
@end

@interface EKEvent : EKCalendarItem
@property (readonly, null_unspecified) NSString* eventIdentifier;
@property (copy, null_unspecified) NSDate* startDate;
@property (copy, null_unspecified) NSDate* endDate;
@property (getter=isAllDay) BOOL allDay;
@end

using EKEventStoreRequestAccessCompletionHandler = void (^)(BOOL granted, NSError* _Nullable error);

@interface EKEventStore : NSObject
+ (EKAuthorizationStatus)authorizationStatusForEntityType:(EKEntityType)type;
- (void)requestFullAccessToEventsWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion
    __attribute__((availability(macos, introduced = 14.0)));
- (NSArray<EKCalendar*>*)calendarsForEntityType:(EKEntityType)type;
- (NSPredicate*)predicateForEventsWithStartDate:(NSDate*)start
                                        endDate:(NSDate*)end
                                      calendars:(nullable NSArray<EKCalendar*>*)calendars;
- (NSArray<EKEvent*>*)eventsMatchingPredicate:(NSPredicate*)predicate;
@end

extern "C" NSString* const EKEventStoreChangedNotification;

#pragma clang assume_nonnull end
