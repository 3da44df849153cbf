#pragma once

#include "shell/macos/native_geometry.h"
#include "shell/macos/native_windows.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace kestro {

/// Panes of NSVisualEffectView behind the content of windows. Main thread. Ignores views without a window.
class NativeVisualEffects {
public:
    virtual ~NativeVisualEffects() = default;

    /// Lays a pane of `material` (NSVisualEffectMaterial) behind these parts of the view, or changes the one that
    /// is there. Without parts it takes the pane away. Parts are relative to the bottom left corner of the view.
    virtual void lay(NativeView view, std::int64_t material, const std::vector<NativeRect>& parts) = 0;

    /// Changes the material of a view's pane, if it has one.
    virtual void setMaterial(NativeView view, std::int64_t material) = 0;
};

std::unique_ptr<NativeVisualEffects> makeNativeVisualEffects();

}  // namespace kestro
