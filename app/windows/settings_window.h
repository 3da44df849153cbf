#pragma once

#include "app/windows/surface_window.h"

namespace kestro {

/// The preferences' window: of fixed size, in the middle of the screen when it is made, moved by its
/// background. Made at the first request and then kept.
class SettingsWindow final : public SurfaceWindow {
public:
    SettingsWindow(WindowDelegate& delegate, ContentFactory makeContent);
};

}  // namespace kestro
