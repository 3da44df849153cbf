#pragma once

namespace kestro {

/// A point of AppKit: in points, from the bottom left corner of the primary screen upwards.
struct NativePoint {
    double x = 0;
    double y = 0;

    friend bool operator==(const NativePoint&, const NativePoint&) = default;
};

/// A rectangle of AppKit; `x` and `y` are its bottom left corner.
struct NativeRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const NativeRect&, const NativeRect&) = default;
};

}  // namespace kestro
