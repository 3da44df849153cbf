#pragma once

#include <chrono>

/// The durations of animations that the user triggers; data is never animated. Main thread.
namespace kestro::motion {

inline constexpr std::chrono::milliseconds none{0};
inline constexpr std::chrono::milliseconds hover{120};
inline constexpr std::chrono::milliseconds press{60};
inline constexpr std::chrono::milliseconds slide{150};  ///< switch knob, segment
inline constexpr std::chrono::milliseconds tab{120};
inline constexpr std::chrono::milliseconds popoverOpen{130};
inline constexpr std::chrono::milliseconds popoverClose{90};
inline constexpr std::chrono::milliseconds window{180};

/// Sets the desktop's reduced-motion preference.
void setReduced(bool isReduced);

/// True when nothing may be animated: the desktop disables it, or the style's animations take no time.
bool isReduced();

/// The current duration of an animation in milliseconds: 0 with reduced motion.
int duration(std::chrono::milliseconds full);

}  // namespace kestro::motion
