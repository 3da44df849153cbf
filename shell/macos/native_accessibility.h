#pragma once

#include "shell/macos/native_application.h"

#include <functional>
#include <memory>

namespace kestro {

/// The display settings in the user's accessibility preferences.
struct AccessibilityDisplayOptions {
    bool increasesContrast = false;
    bool reducesMotion = false;

    friend bool operator==(const AccessibilityDisplayOptions&, const AccessibilityDisplayOptions&) = default;
};

/// Reads and watches them in the NSWorkspace. Main thread.
class NativeAccessibility {
public:
    virtual ~NativeAccessibility() = default;

    virtual AccessibilityDisplayOptions options() const = 0;

    /// Calls `handler` after each change.
    [[nodiscard]] virtual std::unique_ptr<NativeWatch> watch(std::function<void()> handler) = 0;
};

std::unique_ptr<NativeAccessibility> makeNativeAccessibility();

}  // namespace kestro
