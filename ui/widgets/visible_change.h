#pragma once

namespace kestro {

/// The smallest change that antialiasing makes visible: a quarter of a device pixel.
inline constexpr double visiblePixels = 0.25;

}  // namespace kestro
