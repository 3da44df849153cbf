#pragma once

namespace kestro {

/// A quarter of a device pixel is the least change that antialiasing shows.
inline constexpr double kVisiblePixels = 0.25;

}  // namespace kestro
