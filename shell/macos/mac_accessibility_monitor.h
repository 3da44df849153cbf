#pragma once

#include "shell/macos/native_accessibility.h"

#include <memory>

namespace kestro {

/// Applies the user's accessibility preferences (increased contrast, reduced motion) to the theme, now and after
/// each change. Main thread; `accessibility` outlives it.
class MacAccessibilityMonitor {
public:
    explicit MacAccessibilityMonitor(NativeAccessibility& accessibility);
    MacAccessibilityMonitor(const MacAccessibilityMonitor&) = delete;
    MacAccessibilityMonitor& operator=(const MacAccessibilityMonitor&) = delete;

private:
    void apply() const;

    NativeAccessibility& accessibility_;
    const std::unique_ptr<NativeWatch> watch_;
};

}  // namespace kestro
