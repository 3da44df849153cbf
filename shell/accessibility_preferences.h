#pragma once

namespace kestro {

/// What the user asks of every application's look. Main thread.
struct AccessibilityPreferences {
    bool wantsHighContrast = false;
    bool wantsReducedMotion = false;

    /// Applies both to the theme, and repaints the windows if the contrast changes.
    void apply() const;
};

}  // namespace kestro
