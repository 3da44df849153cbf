#pragma once

#include "shell/macos/native_windows.h"

#include <cstdint>

/// AppKit's values for the windows of this program. Pure.
namespace kestro::window_style {

inline constexpr std::int64_t normalLevel = 0;
inline constexpr std::int64_t floatingLevel = 3;

// NSWindowStyleMask.
inline constexpr std::uint64_t titled = 1U << 0;
inline constexpr std::uint64_t closable = 1U << 1;
inline constexpr std::uint64_t miniaturizable = 1U << 2;
inline constexpr std::uint64_t resizable = 1U << 3;
inline constexpr std::uint64_t fullSizeContentView = 1U << 15;

// NSWindowCollectionBehavior.
inline constexpr std::uint64_t moveToActiveSpace = 1U << 1;
inline constexpr std::uint64_t managed = 1U << 2;
inline constexpr std::uint64_t transient = 1U << 3;
inline constexpr std::uint64_t ignoresCycle = 1U << 6;
inline constexpr std::uint64_t fullScreenPrimary = 1U << 7;
inline constexpr std::uint64_t fullScreenAuxiliary = 1U << 8;

/// NSWindowAnimationBehavior.
inline constexpr std::int64_t utilityWindow = 4;

/// A window that the user can resize, and make full screen.
inline constexpr NativeWindowStyle ofResizableWindow{
    titled | closable | miniaturizable | resizable | fullSizeContentView, managed | fullScreenPrimary,
    utilityWindow};

/// A window of fixed size, which may join another one in full screen.
inline constexpr NativeWindowStyle ofFixedWindow{titled | closable | fullSizeContentView,
                                                 managed | fullScreenAuxiliary, utilityWindow};

/// The behaviour of a window that comes and goes with the status item: on whichever space the user is, even beside
/// another application in full screen, and in no list of windows.
inline constexpr std::uint64_t ofPopover = moveToActiveSpace | transient | ignoresCycle | fullScreenAuxiliary;

static_assert(ofResizableWindow.styleMask == 0x800f && ofResizableWindow.collectionBehavior == 0x84);
static_assert(ofFixedWindow.styleMask == 0x8003);

}  // namespace kestro::window_style
