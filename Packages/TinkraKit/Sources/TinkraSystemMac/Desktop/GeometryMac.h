#pragma once

#include "TinkraSystem/Desktop/Geometry.h"

#import <AppKit/AppKit.h>

namespace Tinkra::System {

// Our geometry is this system's own: points, from the bottom left corner of the first screen.

inline NSRect nativeRect(Rect rect)
{
    return {{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}};
}

inline Rect rectFrom(NSRect rect)
{
    return {{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}};
}

}
