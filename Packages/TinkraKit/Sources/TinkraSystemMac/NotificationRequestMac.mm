#include "TinkraSystemMac/NotificationRequestMac.h"

#include "TinkraSystemMac/FoundationValues.h"

namespace Tinkra::System {

namespace {

id _Nonnull objectFrom(const std::string& text)
{
    return stringFrom(text);
}

id _Nonnull objectFrom(double number)
{
    return [NSNumber numberWithDouble:number];
}

NSDictionary* _Nonnull dictionaryFrom(const UserInfo& userInfo)
{
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
    for (const auto& [key, value] : userInfo) {
        [dictionary setObject:std::visit([](const auto& held) { return objectFrom(held); }, value)
                       forKey:stringFrom(key)];
    }
    return dictionary;
}

UserInfo userInfoFrom(NSDictionary* _Nonnull dictionary)
{
    UserInfo userInfo;
    for (NSString* key in dictionary) {
        id value = [dictionary objectForKey:key];
        if ([value isKindOfClass:[NSString class]])
            userInfo.emplace(utf8From(key), utf8From(value));
        else if ([value isKindOfClass:[NSNumber class]])
            userInfo.emplace(utf8From(key), [value doubleValue]);
    }
    return userInfo;
}

UNNotificationSound* _Nullable nativeSound(NotificationSound sound)
{
    switch (sound) {
    case NotificationSound::None:
        return nil;
    case NotificationSound::Default:
        return UNNotificationSound.defaultSound;
    }
    return nil;
}

UNNotificationInterruptionLevel nativeLevel(InterruptionLevel level)
{
    switch (level) {
    case InterruptionLevel::Passive:
        return UNNotificationInterruptionLevelPassive;
    case InterruptionLevel::Active:
        return UNNotificationInterruptionLevelActive;
    case InterruptionLevel::TimeSensitive:
        return UNNotificationInterruptionLevelTimeSensitive;
    case InterruptionLevel::Critical:
        return UNNotificationInterruptionLevelCritical;
    }
    return UNNotificationInterruptionLevelActive;
}

InterruptionLevel levelFrom(UNNotificationInterruptionLevel level)
{
    switch (level) {
    case UNNotificationInterruptionLevelPassive:
        return InterruptionLevel::Passive;
    case UNNotificationInterruptionLevelActive:
        return InterruptionLevel::Active;
    case UNNotificationInterruptionLevelTimeSensitive:
        return InterruptionLevel::TimeSensitive;
    case UNNotificationInterruptionLevelCritical:
        return InterruptionLevel::Critical;
    }
    return InterruptionLevel::Active;
}

NSDateComponents* _Nonnull nativeComponents(const DateComponents& components)
{
    NSDateComponents* native = [[NSDateComponents alloc] init];
    native.year = components.year;
    native.month = components.month;
    native.day = components.day;
    native.hour = components.hour;
    native.minute = components.minute;
    native.second = components.second;
    return native;
}

DateComponents componentsFrom(NSDateComponents* _Nonnull native)
{
    return {
        .year = static_cast<int>(native.year),
        .month = static_cast<int>(native.month),
        .day = static_cast<int>(native.day),
        .hour = static_cast<int>(native.hour),
        .minute = static_cast<int>(native.minute),
        .second = static_cast<int>(native.second),
    };
}

CalendarTrigger triggerFrom(UNNotificationTrigger* _Nullable trigger)
{
    if (![trigger isKindOfClass:[UNCalendarNotificationTrigger class]])
        return {};
    auto* calendarTrigger = static_cast<UNCalendarNotificationTrigger*>(trigger);
    return {
        .components = componentsFrom(calendarTrigger.dateComponents),
        .repeats = calendarTrigger.repeats != NO,
    };
}

UNNotificationContent* _Nonnull nativeContent(const NotificationContent& content)
{
    UNMutableNotificationContent* native = [[UNMutableNotificationContent alloc] init];
    native.title = stringFrom(content.title);
    native.body = stringFrom(content.body);
    native.sound = nativeSound(content.sound);
    native.interruptionLevel = nativeLevel(content.interruptionLevel);
    native.userInfo = dictionaryFrom(content.userInfo);
    return native;
}

}

UNNotificationRequest* nativeRequest(const NotificationRequest& request)
{
    UNCalendarNotificationTrigger* trigger = [UNCalendarNotificationTrigger
        triggerWithDateMatchingComponents:nativeComponents(request.trigger.components)
                                  repeats:request.trigger.repeats];
    return [UNNotificationRequest requestWithIdentifier:stringFrom(request.identifier)
                                                content:nativeContent(request.content)
                                                trigger:trigger];
}

NotificationRequest requestFrom(UNNotificationRequest* request)
{
    return {
        .identifier = utf8From(request.identifier),
        .content =
            {
                .title = utf8From(request.content.title),
                .body = utf8From(request.content.body),
                .sound = request.content.sound == nil ? NotificationSound::None : NotificationSound::Default,
                .interruptionLevel = levelFrom(request.content.interruptionLevel),
                .userInfo = userInfoFrom(request.content.userInfo),
            },
        .trigger = triggerFrom(request.trigger),
    };
}

}
