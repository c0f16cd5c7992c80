// Our sources are written for ARC, which this runtime does not have: here nothing retains, so nothing may
// release.

#import <Foundation/Foundation.h>

@interface NSObject (NeverReleased)
@end

#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation" // that is the point

@implementation NSObject (NeverReleased)

- (oneway void)release
{
}

- (id)autorelease
{
    return self;
}

@end
