#pragma once

#include <QColor>

#include "core/settings/appearance_enumerations.h"

namespace kestro {

class UserSettings;

/// The palette's main accent; opaque sRGB like the two below.
QColor primaryColor(ThemePalette palette);

/// The palette's second accent, used for warning values.
QColor secondaryColor(ThemePalette palette);

/// The palette's near-black ground.
QColor surfaceTint(ThemePalette palette);

/// The one source of colours. Accents and ground follow the palette of the settings store at every access, so
/// that a new palette shows at the next redraw; the other colours are fixed. Main thread.
class KestroTheme {
public:
    KestroTheme() = delete;

    static QColor textPrimary();
    static QColor textSecondary();
    static QColor textTertiary();
    static QColor accentCritical();
    static QColor accentNominal();
    static QColor accentCool();
    static QColor accentWarning();
    static QColor ground();

    /// Card backgrounds; always the colour of the ground.
    static QColor surface();
    static QColor surfaceSubtle();
    static QColor hairline();
    static QColor hairlineStrong();

    /// Makes `settings` the store whose palette counts, instead of the shared one. It has to outlive the
    /// binding; null returns to the shared store.
    static void bind(const UserSettings* settings);

    /// The store in use.
    static const UserSettings& settings();

    /// Raises contrast as the desktop asks: strong hairlines, secondary text as bright as primary text. Views
    /// follow at their next redraw.
    static void setHighContrast(bool isHigh);
    static bool isHighContrast();
};

}  // namespace kestro
