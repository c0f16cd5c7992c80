#pragma once

// Written for the checks from public documentation: what our sources use of this framework, and no more.

#include <cstddef>

using CGFloat = double;

struct CGPoint {
    CGFloat x;
    CGFloat y;
};

struct CGSize {
    CGFloat width;
    CGFloat height;
};

struct CGRect {
    CGPoint origin;
    CGSize size;
};

#pragma clang assume_nonnull begin

using CGColorRef = struct CGColor*;

extern "C" {
std::size_t CGColorGetNumberOfComponents(CGColorRef _Nullable color);
const CGFloat* _Nullable CGColorGetComponents(CGColorRef _Nullable color);
}

#pragma clang assume_nonnull end
