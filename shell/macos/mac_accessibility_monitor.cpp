#include "shell/macos/mac_accessibility_monitor.h"

#include "shell/accessibility_preferences.h"

namespace kestro {

MacAccessibilityMonitor::MacAccessibilityMonitor(NativeAccessibility& accessibility)
    : accessibility_(accessibility), watch_(accessibility.watch([this] { apply(); })) {
    apply();
}

void MacAccessibilityMonitor::apply() const {
    const AccessibilityDisplayOptions options = accessibility_.options();
    AccessibilityPreferences{.wantsHighContrast = options.increasesContrast,
                             .wantsReducedMotion = options.reducesMotion}
        .apply();
}

}  // namespace kestro
