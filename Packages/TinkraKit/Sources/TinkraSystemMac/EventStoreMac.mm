#include "TinkraSystemMac/EventStoreMac.h"

#include "TinkraConcurrency/Continuation.h"
#include "TinkraSystemMac/BundledNotices.h"
#include "TinkraSystemMac/FoundationValues.h"
#include "TinkraSystemMac/RunOn.h"

#include <algorithm>
#include <stdexcept>

/// Hears of the changes of one store until it is removed from the notification centre.
@interface TinkraChangeObserver : NSObject {
    std::shared_ptr<Tinkra::System::BundledNotices> _notices;
}
- (nonnull instancetype)initWithNotices:(std::shared_ptr<Tinkra::System::BundledNotices>)notices;
- (void)storeChanged:(nonnull NSNotification*)notification;
@end

@implementation TinkraChangeObserver

- (instancetype)initWithNotices:(std::shared_ptr<Tinkra::System::BundledNotices>)notices
{
    self = [super init];
    if (self != nil)
        _notices = std::move(notices);
    return self;
}

- (void)storeChanged:(NSNotification*)notification
{
    _notices->changed();
}

@end

namespace Tinkra::System {

namespace {

template <typename Object> Object* _Nonnull required(Object* _Nullable object)
{
    if (object == nil)
        throw std::runtime_error("The calendar store gave no answer.");
    return static_cast<Object* _Nonnull>(object);
}

std::optional<std::vector<double>> componentsOf(CGColorRef _Nullable color)
{
    const CGFloat* components = color == nullptr ? nullptr : CGColorGetComponents(color);
    if (components == nullptr)
        return std::nullopt;
    return std::vector<double>(components, components + CGColorGetNumberOfComponents(color));
}

std::vector<StoredCalendar> calendarsOf(EKEventStore* _Nonnull store)
{
    @autoreleasepool {
        std::vector<StoredCalendar> calendars;
        for (EKCalendar* calendar in required([store calendarsForEntityType:EKEntityTypeEvent])) {
            calendars.push_back({
                .identifier = utf8From(required(calendar.calendarIdentifier)),
                .title = utf8From(required(calendar.title)),
                .sourceTitle = utf8From(required(required(calendar.source).title)),
                .colorComponents = componentsOf(calendar.CGColor),
            });
        }
        return calendars;
    }
}

StoredEvent storedEvent(EKEvent* _Nonnull event)
{
    return {
        .details = EventDetails{.eventIdentifier = optionalUtf8From(event.eventIdentifier),
            .calendarItemIdentifier = utf8From(required(event.calendarItemIdentifier)),
            .calendarIdentifier = utf8From(required(required(event.calendar).calendarIdentifier)),
            .title = optionalUtf8From(event.title)},
        .start = optionalInstantFrom(event.startDate),
        .end = optionalInstantFrom(event.endDate),
        .isAllDay = event.isAllDay != NO,
    };
}

NSArray<EKCalendar*>* _Nonnull calendarsNamed(
    const std::vector<std::string>& identifiers, EKEventStore* _Nonnull store)
{
    NSMutableArray<EKCalendar*>* named = [NSMutableArray array];
    for (EKCalendar* calendar in required([store calendarsForEntityType:EKEntityTypeEvent])) {
        if (std::ranges::count(identifiers, utf8From(required(calendar.calendarIdentifier))) > 0)
            [named addObject:calendar];
    }
    return named;
}

std::vector<StoredEvent> eventsOf(EKEventStore* _Nonnull store, Instant from, Instant to,
    const std::vector<std::string>& calendarIdentifiers)
{
    @autoreleasepool {
        NSArray<EKCalendar*>* calendars = calendarsNamed(calendarIdentifiers, store);
        std::vector<StoredEvent> events;
        if (calendars.count == 0)
            return events; // the store takes no calendars for all of them
        NSPredicate* range = [store predicateForEventsWithStartDate:dateFrom(from)
                                                            endDate:dateFrom(to)
                                                          calendars:calendars];
        for (EKEvent* event in required([store eventsMatchingPredicate:range]))
            events.push_back(storedEvent(event));
        return events;
    }
}

}

EventStoreMac::EventStoreMac(EKEventStore* store, std::shared_ptr<Clock> clock)
    : m_store(store)
    , m_clock(std::move(clock))
{
}

CalendarAuthorization EventStoreMac::authorizationStatus()
{
    switch ([EKEventStore authorizationStatusForEntityType:EKEntityTypeEvent]) {
    case EKAuthorizationStatusNotDetermined:
        return CalendarAuthorization::NotDetermined;
    case EKAuthorizationStatusRestricted:
        return CalendarAuthorization::Restricted;
    case EKAuthorizationStatusDenied:
        return CalendarAuthorization::Denied;
    case EKAuthorizationStatusFullAccess:
        return CalendarAuthorization::FullAccess;
    case EKAuthorizationStatusWriteOnly:
        return CalendarAuthorization::WriteOnly;
    }
    return CalendarAuthorization::Denied; // a value that this program does not know yet
}

Task<bool> EventStoreMac::requestFullAccess()
{
    EKEventStore* store = m_store;
    return suspend<bool>([store](Continuation<bool> waiting) {
        [store requestFullAccessToEventsWithCompletion:^(BOOL granted, NSError* error) {
            if (error != nil)
                waiting.fail(exceptionFrom(error));
            else
                waiting.resume(granted != NO);
        }];
    });
}

Task<std::vector<StoredCalendar>> EventStoreMac::calendars()
{
    EKEventStore* store = m_store;
    return runOn<std::vector<StoredCalendar>>(
        m_thread->get_executor(), [store] { return calendarsOf(store); });
}

Task<std::vector<StoredEvent>> EventStoreMac::events(
    Instant from, Instant to, std::vector<std::string> calendarIdentifiers)
{
    EKEventStore* store = m_store;
    return runOn<std::vector<StoredEvent>>(
        m_thread->get_executor(), [store, from, to, identifiers = std::move(calendarIdentifiers)] {
            return eventsOf(store, from, to, identifiers);
        });
}

Observation EventStoreMac::observeChanges(std::function<void()> changed)
{
    const auto notices =
        std::make_shared<BundledNotices>(m_thread->get_executor(), m_clock, std::move(changed));
    TinkraChangeObserver* observer = [[TinkraChangeObserver alloc] initWithNotices:notices];
    [NSNotificationCenter.defaultCenter addObserver:observer
                                           selector:@selector(storeChanged:)
                                               name:EKEventStoreChangedNotification
                                             object:m_store];
    return {nullptr, [observer, notices, thread = m_thread](void*) {
                [NSNotificationCenter.defaultCenter removeObserver:observer];
                notices->end();
            }};
}

}
