#pragma once

// Only what shell/macos uses of AppKit and Foundation, with the names, types, values and nullability of the
// system's own headers, compared with the bindings that others publish of those. For checking
// the Objective-C++ on systems without an SDK; nothing here is implemented.

#include <cstddef>
#include <cstdint>

// --- Objective-C and Core Graphics -------------------------------------------------------------------------

#if defined(__arm64__)
using BOOL = bool;
#else
using BOOL = signed char;
#endif
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr

using NSInteger = long;
using NSUInteger = unsigned long;
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
using NSPoint = CGPoint;
using NSSize = CGSize;
using NSRect = CGRect;

inline NSPoint NSMakePoint(CGFloat x, CGFloat y) {
    return {x, y};
}
inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return {{x, y}, {width, height}};
}

#include <AppKit/FoundationDeclarations.h>
#include <AppKit/StatusItemDeclarations.h>
#include <AppKit/WindowDeclarations.h>
