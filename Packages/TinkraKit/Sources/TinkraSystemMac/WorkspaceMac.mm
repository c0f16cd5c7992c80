#include "TinkraSystemMac/WorkspaceMac.h"

#include "TinkraSystemMac/FoundationValues.h"

#import <AppKit/AppKit.h>

/// Hears that the machine has slept and is awake again.
@interface TinkraWakeObserver : NSObject {
    std::function<void()> _awake;
}
- (nonnull instancetype)initWithHandler:(std::function<void()>)awake;
- (void)didWake:(nonnull NSNotification*)notification;
@end

@implementation TinkraWakeObserver

- (instancetype)initWithHandler:(std::function<void()>)awake
{
    self = [super init];
    if (self != nil)
        _awake = std::move(awake);
    return self;
}

- (void)didWake:(NSNotification*)notification
{
    _awake();
}

@end

namespace Tinkra::System {

Observation WorkspaceMac::observeDidWake(std::function<void()> awake)
{
    TinkraWakeObserver* observer = [[TinkraWakeObserver alloc] initWithHandler:std::move(awake)];
    // The workspace has a centre of its own.
    NSNotificationCenter* center = NSWorkspace.sharedWorkspace.notificationCenter;
    [center addObserver:observer selector:@selector(didWake:) name:NSWorkspaceDidWakeNotification object:nil];
    return {nullptr, [observer, center](void*) { [center removeObserver:observer]; }};
}

bool WorkspaceMac::open(std::string_view address)
{
    NSString* string = stringOrNil(address);
    NSURL* url = string == nil ? nil : [NSURL URLWithString:static_cast<NSString* _Nonnull>(string)];
    return url != nil && [NSWorkspace.sharedWorkspace openURL:static_cast<NSURL* _Nonnull>(url)];
}

std::string WorkspaceMac::fullUserName()
{
    auto name = utf8From(NSFullUserName());
    return name.empty() ? utf8From(NSUserName()) : name;
}

void WorkspaceMac::log(std::string_view line)
{
    NSLog(@"%@", stringOrNil(line));
}

}
