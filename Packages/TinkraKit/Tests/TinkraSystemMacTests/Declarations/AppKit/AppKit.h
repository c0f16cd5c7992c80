#pragma once

// Written for the checks from public documentation: what our sources use of this framework, and no more.

#import <Foundation/Foundation.h>
#import <QuartzCore/QuartzCore.h>

#pragma clang assume_nonnull begin

using NSWindowStyleMask = NSUInteger;
enum __attribute__((flag_enum)) : NSWindowStyleMask {
    NSWindowStyleMaskBorderless = 0,
    NSWindowStyleMaskNonactivatingPanel = 1 << 7,
};

enum NSBackingStoreType : NSUInteger {
    NSBackingStoreBuffered = 2,
};

using NSWindowCollectionBehavior = NSUInteger;
enum __attribute__((flag_enum)) : NSWindowCollectionBehavior {
    NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
    NSWindowCollectionBehaviorStationary = 1 << 4,
    NSWindowCollectionBehaviorIgnoresCycle = 1 << 6,
    NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};

using NSWindowLevel = NSInteger;
inline constexpr NSWindowLevel NSScreenSaverWindowLevel = 1000;

@interface NSColor : NSObject
@property (class, readonly, strong) NSColor* clearColor;
@end

@interface NSView : NSObject
@end

@interface NSScreen : NSObject
@property (class, readonly, copy) NSArray<NSScreen*>* screens;
@property (class, readonly, strong, nullable) NSScreen* mainScreen;
@property (readonly) NSRect frame;
@property (readonly) NSRect visibleFrame;
@end

@interface NSEvent : NSObject
@property (class, readonly) NSPoint mouseLocation;
@end

@protocol NSAnimatablePropertyContainer
- (instancetype)animator;
@end

@interface NSWindow : NSObject <NSAnimatablePropertyContainer>
- (instancetype)initWithContentRect:(NSRect)rect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)deferred;
@property (nullable, strong) NSView* contentView;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property (copy, null_unspecified) NSColor* backgroundColor;
@property (getter=isOpaque) BOOL opaque;
@property BOOL hasShadow;
@property BOOL hidesOnDeactivate;
@property (getter=isMovableByWindowBackground) BOOL movableByWindowBackground;
@property (getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property (readonly) BOOL canBecomeKeyWindow;
@property (readonly) BOOL canBecomeMainWindow;
@property (readonly) NSRect frame;
@property (readonly, nullable, strong) NSScreen* screen;
- (void)setFrame:(NSRect)frame display:(BOOL)display;
- (void)orderFrontRegardless;
- (void)close;
@end

@interface NSPanel : NSWindow
@property (getter=isFloatingPanel) BOOL floatingPanel;
@end

@interface NSAnimationContext : NSObject
+ (void)runAnimationGroup:(void(__attribute__((noescape)) ^)(NSAnimationContext* context))changes
        completionHandler:(nullable void (^)())completionHandler;
@property NSTimeInterval duration;
@property (nullable, strong) CAMediaTimingFunction* timingFunction;
@end

@interface NSWorkspace : NSObject
@property (class, readonly, strong) NSWorkspace* sharedWorkspace;
@property (readonly, strong) NSNotificationCenter* notificationCenter;
- (BOOL)openURL:(NSURL*)url;
@end

extern "C" NSNotificationName const NSWorkspaceDidWakeNotification;

@interface NSSound : NSObject <NSCopying>
+ (nullable NSSound*)soundNamed:(NSString*)name;
- (BOOL)play;
- (BOOL)stop;
@property BOOL loops;
@end

#pragma clang assume_nonnull end
