#include "ui/theme/kestro_theme.h"

#include "core/settings/user_settings.h"

#include <array>
#include <cstddef>

namespace kestro {

namespace {

struct Rgb {
    float red;
    float green;
    float blue;

    QColor color(float opacity = 1) const { return QColor::fromRgbF(red, green, blue, opacity); }
};

struct PaletteColors {
    ThemePalette palette;
    Rgb primary;
    Rgb secondary;
    Rgb tint;
};

constexpr std::array palettes{
    PaletteColors{ThemePalette::cryogenic, {0.24F, 0.51F, 0.96F}, {0.96F, 0.62F, 0.04F}, {0.07F, 0.08F, 0.10F}},
    PaletteColors{ThemePalette::thermal, {0.96F, 0.62F, 0.04F}, {0.94F, 0.27F, 0.24F}, {0.09F, 0.07F, 0.07F}},
    PaletteColors{ThemePalette::obsidian, {0.06F, 0.73F, 0.51F}, {0.02F, 0.71F, 0.83F}, {0.06F, 0.09F, 0.07F}},
    PaletteColors{ThemePalette::lilac, {0.80F, 0.69F, 0.99F}, {0.51F, 0.55F, 0.97F}, {0.08F, 0.07F, 0.11F}},
    PaletteColors{ThemePalette::monolith, {0.89F, 0.91F, 0.94F}, {0.58F, 0.64F, 0.72F}, {0.07F, 0.08F, 0.09F}},
};
static_assert(palettes.size() == EnumerationTable<ThemePalette>::rows.size());

constexpr Rgb primaryText{0.92F, 0.94F, 0.96F};
constexpr Rgb secondaryText{0.58F, 0.62F, 0.68F};
constexpr Rgb tertiaryText{0.40F, 0.43F, 0.48F};
constexpr Rgb critical{0.94F, 0.27F, 0.24F};
constexpr Rgb nominal{0.06F, 0.73F, 0.51F};
constexpr Rgb white{1, 1, 1};

constexpr float subtleOpacity = 0.04F;
constexpr float hairlineOpacity = 0.08F;
constexpr float strongHairlineOpacity = 0.14F;
constexpr float highContrastHairlineOpacity = 0.35F;

const UserSettings* boundSettings = nullptr;
bool highContrast = false;

constexpr const PaletteColors& colorsOf(ThemePalette palette) {
    return palettes[static_cast<std::size_t>(palette)];
}

ThemePalette currentPalette() {
    return KestroTheme::settings().themePalette.get();
}

}  // namespace

QColor primaryColor(ThemePalette palette) {
    return colorsOf(palette).primary.color();
}

QColor secondaryColor(ThemePalette palette) {
    return colorsOf(palette).secondary.color();
}

QColor surfaceTint(ThemePalette palette) {
    return colorsOf(palette).tint.color();
}

QColor KestroTheme::textPrimary() {
    return primaryText.color();
}

QColor KestroTheme::textSecondary() {
    return (highContrast ? primaryText : secondaryText).color();
}

QColor KestroTheme::textTertiary() {
    return (highContrast ? primaryText : tertiaryText).color();
}

QColor KestroTheme::accentCritical() {
    return critical.color();
}

QColor KestroTheme::accentNominal() {
    return nominal.color();
}

QColor KestroTheme::accentCool() {
    return primaryColor(currentPalette());
}

QColor KestroTheme::accentWarning() {
    return secondaryColor(currentPalette());
}

QColor KestroTheme::ground() {
    return surfaceTint(currentPalette());
}

QColor KestroTheme::surface() {
    return ground();
}

QColor KestroTheme::surfaceSubtle() {
    return white.color(subtleOpacity);
}

QColor KestroTheme::hairline() {
    return white.color(highContrast ? highContrastHairlineOpacity : hairlineOpacity);
}

QColor KestroTheme::hairlineStrong() {
    return white.color(highContrast ? highContrastHairlineOpacity : strongHairlineOpacity);
}

void KestroTheme::bind(const UserSettings* settings) {
    boundSettings = settings;
}

const UserSettings& KestroTheme::settings() {
    return boundSettings ? *boundSettings : UserSettings::shared();
}

void KestroTheme::setHighContrast(bool isHigh) {
    highContrast = isHigh;
}

bool KestroTheme::isHighContrast() {
    return highContrast;
}

}  // namespace kestro
