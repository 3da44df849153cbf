#pragma once

#include <chrono>

namespace kestro {

/// How long what the user causes takes to move; data never moves. Main thread.
namespace motion {

inline constexpr std::chrono::milliseconds hover{120};
inline constexpr std::chrono::milliseconds press{60};
inline constexpr std::chrono::milliseconds slide{150};  ///< switch knob, segment
inline constexpr std::chrono::milliseconds tab{120};
inline constexpr std::chrono::milliseconds popoverOpen{130};
inline constexpr std::chrono::milliseconds popoverClose{90};
inline constexpr std::chrono::milliseconds window{180};

/// Follows the desktop's animation switch.
void setReduced(bool isReduced);

/// True when nothing may move: the desktop says so, or the style's animations take no time.
bool isReduced();

/// Milliseconds that a movement takes now: 0 with reduced motion.
int duration(std::chrono::milliseconds full);

}  // namespace motion

}  // namespace kestro
