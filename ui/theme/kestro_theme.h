#pragma once

#include "core/model/appearance_enumerations.h"

#include <QColor>

namespace kestro {

class UserSettings;

/// The palette's main accent; opaque sRGB like the next two.
QColor primaryColor(ThemePalette palette);

/// The palette's second accent, used for warning values.
QColor secondaryColor(ThemePalette palette);

/// The palette's near-black ground.
QColor surfaceTint(ThemePalette palette);

/// The single source of colours. Accents and ground follow the palette in the settings at every access, so that a
/// new palette shows at the next redraw; the other colours are fixed. Main thread.
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

    /// The background of cards; always the ground colour.
    static QColor surface();
    static QColor surfaceSubtle();
    static QColor hairline();
    static QColor hairlineStrong();

    /// Uses the palette of `settings` instead of that of the shared store. `settings` must outlive the binding;
    /// null restores the shared store.
    static void bind(const UserSettings* settings);

    /// The settings in use.
    static const UserSettings& settings();

    /// Raises the contrast when the desktop requests it: strong hairlines, and secondary text as bright as primary
    /// text. Views follow at their next redraw.
    static void setHighContrast(bool isHigh);
    static bool isHighContrast();
};

}  // namespace kestro
