#include "StandInUserNotifications.h"

#include <functional>
#include <map>
#include <thread>
#include <vector>

using namespace Tinkra::System;

StandInNotifications& StandInNotifications::shared()
{
    static StandInNotifications notifications;
    return notifications;
}

namespace {

// The declared classes have no variables, and this runtime cannot add any. Nothing is released here, so the
// address of an object tells it from all others.
struct Content {
    NSString* title = @"";
    NSString* body = @"";
    UNNotificationSound* sound = nil;
    UNNotificationInterruptionLevel level = UNNotificationInterruptionLevelActive;
    NSDictionary* userInfo = [NSDictionary dictionary];
};

struct Trigger {
    NSDateComponents* components = nil;
    BOOL repeats = NO;
};

struct Request {
    NSString* identifier = nil;
    UNNotificationContent* content = nil;
    UNNotificationTrigger* trigger = nil;
};

template <typename State> State& stateOf(id object)
{
    static std::map<void*, State> states;
    return states[(void*)object];
}

// Answers come on any thread.
void answerOnAnotherThread(const std::function<void()>& answer)
{
    std::thread([&answer] {
        GSRegisterCurrentThread();
        answer();
        GSUnregisterCurrentThread();
    }).join();
}

NSError* errorSaying(const std::string& sentence)
{
    NSString* text = [NSString stringWithUTF8String:sentence.c_str()];
    return [NSError errorWithDomain:@"UNErrorDomain"
                               code:1
                           userInfo:[NSDictionary dictionaryWithObject:text
                                                                forKey:NSLocalizedDescriptionKey]];
}

}

@implementation UNNotificationSound
+ (UNNotificationSound*)defaultSound
{
    static UNNotificationSound* sound = [[UNNotificationSound alloc] init];
    return sound;
}
@end

@implementation UNNotificationContent
@dynamic title, body, sound, interruptionLevel, userInfo;
@end

@implementation UNMutableNotificationContent
- (NSString*)title
{
    return stateOf<Content>(self).title;
}
- (void)setTitle:(NSString*)title
{
    stateOf<Content>(self).title = [title copy];
}
- (NSString*)body
{
    return stateOf<Content>(self).body;
}
- (void)setBody:(NSString*)body
{
    stateOf<Content>(self).body = [body copy];
}
- (UNNotificationSound*)sound
{
    return stateOf<Content>(self).sound;
}
- (void)setSound:(UNNotificationSound*)sound
{
    stateOf<Content>(self).sound = sound;
}
- (UNNotificationInterruptionLevel)interruptionLevel
{
    return stateOf<Content>(self).level;
}
- (void)setInterruptionLevel:(UNNotificationInterruptionLevel)level
{
    stateOf<Content>(self).level = level;
}
- (NSDictionary*)userInfo
{
    return stateOf<Content>(self).userInfo;
}
- (void)setUserInfo:(NSDictionary*)userInfo
{
    stateOf<Content>(self).userInfo = [userInfo copy];
}
@end

@implementation UNNotificationTrigger
- (BOOL)repeats
{
    return stateOf<Trigger>(self).repeats;
}
@end

@implementation UNCalendarNotificationTrigger
+ (instancetype)triggerWithDateMatchingComponents:(NSDateComponents*)components repeats:(BOOL)repeats
{
    UNCalendarNotificationTrigger* trigger = [[UNCalendarNotificationTrigger alloc] init];
    stateOf<Trigger>(trigger) = {[components copy], repeats};
    return trigger;
}
- (NSDateComponents*)dateComponents
{
    return stateOf<Trigger>(self).components;
}
@end

@implementation UNNotificationRequest
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(UNNotificationTrigger*)trigger
{
    UNNotificationRequest* request = [[UNNotificationRequest alloc] init];
    stateOf<Request>(request) = {[identifier copy], content, trigger};
    return request;
}
- (NSString*)identifier
{
    return stateOf<Request>(self).identifier;
}
- (UNNotificationContent*)content
{
    return stateOf<Request>(self).content;
}
- (UNNotificationTrigger*)trigger
{
    return stateOf<Request>(self).trigger;
}
@end

@implementation UNNotification
@dynamic request;
@end

@implementation StandInNotification
- (UNNotificationRequest*)request
{
    return _request;
}
@end

@implementation UNNotificationResponse
@dynamic notification, actionIdentifier;
@end

@implementation StandInResponse
- (UNNotification*)notification
{
    return _notification;
}
- (NSString*)actionIdentifier
{
    return @"com.apple.UNNotificationDefaultActionIdentifier";
}
@end

@implementation UNNotificationSettings
- (UNAuthorizationStatus)authorizationStatus
{
    return StandInNotifications::shared().status;
}
@end

@implementation UNUserNotificationCenter
@dynamic delegate;

+ (UNUserNotificationCenter*)currentNotificationCenter
{
    return [[UNUserNotificationCenter alloc] init];
}

- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL, NSError*))completionHandler
{
    answerOnAnotherThread([&] {
        auto& shared = StandInNotifications::shared();
        shared.askedFor = options;
        shared.status = shared.answer ? UNAuthorizationStatusAuthorized : UNAuthorizationStatusDenied;
        completionHandler(shared.answer, shared.requestFails ? errorSaying("There was an error.") : nil);
    });
}

- (void)getNotificationSettingsWithCompletionHandler:(void (^)(UNNotificationSettings*))completionHandler
{
    answerOnAnotherThread([&] { completionHandler([[UNNotificationSettings alloc] init]); });
}

- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(void (^)(NSError*))completionHandler
{
    answerOnAnotherThread([&] {
        const auto& sentence = StandInNotifications::shared().addingFailsWith;
        if (!sentence.empty()) {
            completionHandler(errorSaying(sentence));
            return;
        }
        auto& pending = stateOf<std::vector<UNNotificationRequest*>>(self);
        std::erase_if(pending,
            [&](UNNotificationRequest* each) { return [each.identifier isEqual:request.identifier]; });
        pending.push_back(request);
        completionHandler(nil);
    });
}

- (void)getPendingNotificationRequestsWithCompletionHandler:
    (void (^)(NSArray<UNNotificationRequest*>*))completionHandler
{
    answerOnAnotherThread([&] {
        NSMutableArray* requests = [NSMutableArray array];
        for (UNNotificationRequest* request : stateOf<std::vector<UNNotificationRequest*>>(self))
            [requests addObject:request];
        completionHandler(requests);
    });
}

- (void)removePendingNotificationRequestsWithIdentifiers:(NSArray<NSString*>*)identifiers
{
    std::erase_if(stateOf<std::vector<UNNotificationRequest*>>(self),
        [&](UNNotificationRequest* each) { return [identifiers containsObject:each.identifier]; });
}

@end
