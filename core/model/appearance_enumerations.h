#pragma once

#include "core/base/enumeration.h"

#include <array>
#include <string_view>

namespace kestro {

/// The colour themes; the UI theme defines their colours.
enum class ThemePalette { cryogenic, thermal, obsidian, lilac, monolith };

template <>
struct EnumerationTable<ThemePalette> {
    using Row = LabelRow<ThemePalette>;
    static constexpr std::array rows{
        Row{ThemePalette::cryogenic, "Cryogenic Azure"},  Row{ThemePalette::thermal, "Thermal Infrared"},
        Row{ThemePalette::obsidian, "Obsidian Emerald"},  Row{ThemePalette::lilac, "Velvet Lilac"},
        Row{ThemePalette::monolith, "Monolith Titanium"},
    };
};

/// Strength of the halftone decoration.
enum class HalftoneIntensity { off, subtle, standard, bold };

template <>
struct EnumerationTable<HalftoneIntensity> {
    struct Row {
        HalftoneIntensity value;
        std::string_view rawValue;
        double alpha;
    };
    static constexpr std::array rows{
        Row{HalftoneIntensity::off, "Off", 0.0},
        Row{HalftoneIntensity::subtle, "Subtle (12%)", 0.12},
        Row{HalftoneIntensity::standard, "Standard (25%)", 0.25},
        Row{HalftoneIntensity::bold, "Bold (45%)", 0.45},
    };
};

/// Opacity of the dots, 0..1.
constexpr double alpha(HalftoneIntensity intensity) {
    return tableRow(intensity).alpha;
}

/// Where the dots of the halftone decoration are concentrated.
enum class HalftonePatternStyle { band, plume, ambient };

template <>
struct EnumerationTable<HalftonePatternStyle> {
    using Row = LabelRow<HalftonePatternStyle>;
    static constexpr std::array rows{
        Row{HalftonePatternStyle::band, "Header Band"},
        Row{HalftonePatternStyle::plume, "Thermal Plume"},
        Row{HalftonePatternStyle::ambient, "Ambient Field"},
    };
};

/// A translucent background material, numbered like NSVisualEffectView.Material.
enum class VisualEffectMaterial { popover = 6, hudWindow = 13, underWindowBackground = 21 };

/// The translucent background of the popover and the windows.
enum class GlassMaterialStyle { deepFrosted, hudContrast, subtleTint };

template <>
struct EnumerationTable<GlassMaterialStyle> {
    struct Row {
        GlassMaterialStyle value;
        std::string_view rawValue;
        VisualEffectMaterial nsMaterial;
    };
    static constexpr std::array rows{
        Row{GlassMaterialStyle::deepFrosted, "Deep Frosted (.underWindowBackground)",
            VisualEffectMaterial::underWindowBackground},
        Row{GlassMaterialStyle::hudContrast, "HUD Contrast (.hudWindow)", VisualEffectMaterial::hudWindow},
        Row{GlassMaterialStyle::subtleTint, "Subtle Tint (.popover)", VisualEffectMaterial::popover},
    };
};

constexpr VisualEffectMaterial nsMaterial(GlassMaterialStyle style) {
    return tableRow(style).nsMaterial;
}

}  // namespace kestro
