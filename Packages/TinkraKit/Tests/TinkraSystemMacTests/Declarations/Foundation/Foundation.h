#pragma once

// Written for the checks from public documentation: what our sources use of this framework, and no more.
// Every line stands in ../../ApiTable.csv with its source.

#include "CoreGraphics/CoreGraphics.h"

#define YES __objc_yes
#define NO __objc_no
#define nil nullptr

using BOOL = bool; // as on arm64
using NSInteger = long;
using NSUInteger = unsigned long;
using NSTimeInterval = double;
using NSPoint = CGPoint;
using NSSize = CGSize;
using NSRect = CGRect;

#pragma clang assume_nonnull begin

@class NSString;
@class NSDate;
@class NSCalendar;

using NSNotificationName = NSString*;

@interface NSObject
+ (instancetype)alloc;
- (instancetype)init;
- (void)dealloc;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)isEqual:(nullable id)object;
+ (Class)class;
@end

@protocol NSObject
@end

struct NSFastEnumerationState {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
};

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)count;
@end

@protocol NSCopying
@end

using NSStringEncoding = NSUInteger;
enum : NSStringEncoding {
    NSUTF8StringEncoding = 4,
};

@interface NSData : NSObject
+ (instancetype)dataWithBytes:(const void* _Nullable)bytes length:(NSUInteger)length;
@property (readonly, nullable) const void* bytes;
@property (readonly) NSUInteger length;
@end

@interface NSString : NSObject <NSCopying>
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
@end

@interface NSNumber : NSObject
+ (NSNumber*)numberWithDouble:(double)value;
@property (readonly) double doubleValue;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
@property (readonly) NSUInteger count;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)object;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSFastEnumeration>
- (nullable ObjectType)objectForKey:(KeyType)key;
@end

@interface NSMutableDictionary<KeyType, ObjectType> : NSDictionary <KeyType, ObjectType>
+ (instancetype)dictionary;
- (void)setObject:(ObjectType)object forKey:(KeyType)key;
@end

@interface NSDate : NSObject
+ (instancetype)dateWithTimeIntervalSince1970:(NSTimeInterval)seconds;
@property (readonly) NSTimeInterval timeIntervalSince1970;
@end

@interface NSDateComponents : NSObject
@property NSInteger year;
@property NSInteger month;
@property NSInteger day;
@property NSInteger hour;
@property NSInteger minute;
@property NSInteger second;
@end

using NSCalendarUnit = NSUInteger;
enum __attribute__((flag_enum)) : NSCalendarUnit {
    NSCalendarUnitYear = 4,
    NSCalendarUnitMonth = 8,
    NSCalendarUnitDay = 16,
    NSCalendarUnitHour = 32,
    NSCalendarUnitMinute = 64,
    NSCalendarUnitSecond = 128,
};

@interface NSCalendar : NSObject
@property (class, readonly, copy) NSCalendar* currentCalendar;
- (NSDateComponents*)components:(NSCalendarUnit)units fromDate:(NSDate*)date;
@end

@interface NSURL : NSObject
+ (nullable instancetype)URLWithString:(NSString*)string;
@end

@interface NSNotification : NSObject
@end

@interface NSNotificationCenter : NSObject
@property (class, readonly, strong) NSNotificationCenter* defaultCenter;
- (void)addObserver:(id)observer
           selector:(SEL)selector
               name:(nullable NSNotificationName)name
             object:(nullable id)object;
- (void)removeObserver:(id)observer;
@end

extern "C" NSNotificationName const NSSystemClockDidChangeNotification;

@interface NSUserDefaults : NSObject
@property (class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable NSData*)dataForKey:(NSString*)key;
- (void)setObject:(nullable id)value forKey:(NSString*)key;
@end

@interface NSPredicate : NSObject
@end

@interface NSError : NSObject
@property (readonly, copy) NSString* localizedDescription;
@end

extern "C" {
NSString* NSFullUserName();
NSString* NSUserName();
void NSLog(NSString* format, ...) __attribute__((format(__NSString__, 1, 2)));
}

@interface NSBundle : NSObject
@property (class, readonly, strong) NSBundle* mainBundle;
@property (readonly, copy, nullable) NSString* bundleIdentifier;
@end

#pragma clang assume_nonnull end
