#include "StandInEventKit.h"

#include <algorithm>
#include <thread>

using namespace Tinkra::System;

NSString* const EKEventStoreChangedNotification = @"EKEventStoreChangedNotification";

struct CGColor {
    std::vector<double> components;
};

std::size_t CGColorGetNumberOfComponents(CGColorRef color)
{
    return color->components.size();
}

const CGFloat* CGColorGetComponents(CGColorRef color)
{
    return color->components.data();
}

namespace {

NSString* text(const std::string& utf8)
{
    return [NSString stringWithUTF8String:utf8.c_str()];
}

NSString* optionalText(const std::optional<std::string>& utf8)
{
    return utf8 ? text(*utf8) : nil;
}

NSDate* optionalDate(const std::optional<Tinkra::Instant>& instant)
{
    return instant ? [NSDate dateWithTimeIntervalSince1970:Tinkra::secondsSince1970(*instant)] : nil;
}

}

StandInCalendars& StandInCalendars::shared()
{
    static StandInCalendars calendars;
    return calendars;
}

// The declared classes have no variables, and this runtime cannot add any: the objects given out are of
// subclasses.

@implementation EKObject
@end

@implementation EKSource
@dynamic title;
@end

@interface StandInSource : EKSource {
@public
    std::string _title;
}
@end

@implementation StandInSource
- (NSString*)title
{
    return text(_title);
}
@end

@implementation EKCalendar
@dynamic calendarIdentifier, title, source, CGColor;
@end

@interface StandInCalendar : EKCalendar {
@public
    StoredCalendar _stored;
    struct CGColor _color;
}
@end

@implementation StandInCalendar
- (NSString*)calendarIdentifier
{
    return text(_stored.identifier);
}
- (NSString*)title
{
    return text(_stored.title);
}
- (EKSource*)source
{
    StandInSource* source = [[StandInSource alloc] init];
    source->_title = _stored.sourceTitle;
    return source;
}
- (CGColorRef)CGColor
{
    if (!_stored.colorComponents)
        return nullptr;
    _color.components = *_stored.colorComponents;
    return &_color;
}
@end

@implementation EKCalendarItem
@dynamic calendarItemIdentifier, calendar, title;
@end

@implementation EKEvent
@dynamic eventIdentifier, startDate, endDate, allDay;
@end

@interface StandInEvent : EKEvent {
@public
    StoredEvent _stored;
}
@end

@implementation StandInEvent
- (NSString*)calendarItemIdentifier
{
    return text(_stored.details->calendarItemIdentifier);
}
- (EKCalendar*)calendar
{
    StandInCalendar* calendar = [[StandInCalendar alloc] init];
    calendar->_stored.identifier = _stored.details->calendarIdentifier;
    return calendar;
}
- (NSString*)title
{
    return optionalText(_stored.details->title);
}
- (NSString*)eventIdentifier
{
    return optionalText(_stored.details->eventIdentifier);
}
- (NSDate*)startDate
{
    return optionalDate(_stored.start);
}
- (NSDate*)endDate
{
    return optionalDate(_stored.end);
}
- (BOOL)isAllDay
{
    return _stored.isAllDay;
}
@end

@interface StandInRange : NSPredicate {
@public
    double _from;
    double _to;
    std::vector<std::string> _calendars;
}
@end

@implementation StandInRange

- (BOOL)holds:(const StoredEvent&)event
{
    if (std::ranges::count(_calendars, event.details->calendarIdentifier) == 0)
        return NO;
    if (!event.start)
        return YES;
    const double start = Tinkra::secondsSince1970(*event.start);
    const double end = Tinkra::secondsSince1970(event.end.value_or(*event.start));
    return start < _to && (end > _from || (end == start && start >= _from));
}

@end

@implementation EKEventStore

+ (EKAuthorizationStatus)authorizationStatusForEntityType:(EKEntityType)type
{
    return StandInCalendars::shared().status;
}

- (void)requestFullAccessToEventsWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion
{
    // The answer comes on any thread.
    std::thread([&completion] {
        GSRegisterCurrentThread();
        auto& shared = StandInCalendars::shared();
        shared.status = shared.answer ? EKAuthorizationStatusFullAccess : EKAuthorizationStatusDenied;
        completion(shared.answer,
            shared.requestFails ? [NSError errorWithDomain:@"EKErrorDomain" code:1 userInfo:nil] : nil);
        GSUnregisterCurrentThread();
    }).join();
}

- (NSArray<EKCalendar*>*)calendarsForEntityType:(EKEntityType)type
{
    const auto& shared = StandInCalendars::shared();
    if (shared.isBroken)
        return static_cast<NSArray*>(nil);
    NSMutableArray* calendars = [NSMutableArray array];
    if (shared.status != EKAuthorizationStatusFullAccess)
        return calendars;
    for (const auto& stored : shared.calendars) {
        StandInCalendar* calendar = [[StandInCalendar alloc] init];
        calendar->_stored = stored;
        [calendars addObject:calendar];
    }
    return calendars;
}

- (NSPredicate*)predicateForEventsWithStartDate:(NSDate*)start
                                        endDate:(NSDate*)end
                                      calendars:(NSArray<EKCalendar*>*)calendars
{
    StandInRange* range = [[StandInRange alloc] init];
    range->_from = start.timeIntervalSince1970;
    range->_to = end.timeIntervalSince1970;
    for (EKCalendar* calendar in calendars)
        range->_calendars.emplace_back(calendar.calendarIdentifier.UTF8String);
    return range;
}

- (NSArray<EKEvent*>*)eventsMatchingPredicate:(NSPredicate*)predicate
{
    auto& shared = StandInCalendars::shared();
    ++shared.queryCount;
    NSMutableArray* events = [NSMutableArray array];
    for (const auto& stored : shared.events) {
        if (![static_cast<StandInRange*>(predicate) holds:stored])
            continue;
        StandInEvent* event = [[StandInEvent alloc] init];
        event->_stored = stored;
        [events addObject:event];
    }
    return events;
}

@end
