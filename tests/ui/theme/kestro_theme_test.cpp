#include "ui/theme/kestro_theme.h"

#include "core/settings/user_settings.h"
#include "platform/simulated/simulated_user_defaults.h"

#include <gtest/gtest.h>

#include <array>

namespace kestro {
namespace {

QColor rgb(double red, double green, double blue, double opacity = 1) {
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue),
                            static_cast<float>(opacity));
}

TEST(ThemePaletteColors, MatchTheTable) {
    struct Expected {
        ThemePalette palette;
        QColor primary;
        QColor secondary;
        QColor tint;
    };
    const std::array expected{
        Expected{ThemePalette::cryogenic, rgb(.24, .51, .96), rgb(.96, .62, .04), rgb(.07, .08, .10)},
        Expected{ThemePalette::thermal, rgb(.96, .62, .04), rgb(.94, .27, .24), rgb(.09, .07, .07)},
        Expected{ThemePalette::obsidian, rgb(.06, .73, .51), rgb(.02, .71, .83), rgb(.06, .09, .07)},
        Expected{ThemePalette::lilac, rgb(.80, .69, .99), rgb(.51, .55, .97), rgb(.08, .07, .11)},
        Expected{ThemePalette::monolith, rgb(.89, .91, .94), rgb(.58, .64, .72), rgb(.07, .08, .09)},
    };

    for (const Expected& row : expected) {
        EXPECT_EQ(primaryColor(row.palette), row.primary) << rawValue(row.palette);
        EXPECT_EQ(secondaryColor(row.palette), row.secondary) << rawValue(row.palette);
        EXPECT_EQ(surfaceTint(row.palette), row.tint) << rawValue(row.palette);
    }
}

TEST(ThemePaletteColors, AreOpaque) {
    for (const ThemePalette palette : allCases<ThemePalette>()) {
        EXPECT_EQ(primaryColor(palette).alpha(), 255);
        EXPECT_EQ(secondaryColor(palette).alpha(), 255);
        EXPECT_EQ(surfaceTint(palette).alpha(), 255);
    }
}

TEST(ThemePaletteColors, KeepTheirDeliberateOverlaps) {
    EXPECT_EQ(secondaryColor(ThemePalette::cryogenic), primaryColor(ThemePalette::thermal));
    EXPECT_EQ(secondaryColor(ThemePalette::thermal), KestroTheme::accentCritical());
    EXPECT_EQ(primaryColor(ThemePalette::obsidian), KestroTheme::accentNominal());
}

TEST(KestroTheme, HasFixedColors) {
    EXPECT_EQ(KestroTheme::textPrimary(), rgb(.92, .94, .96));
    EXPECT_EQ(KestroTheme::textSecondary(), rgb(.58, .62, .68));
    EXPECT_EQ(KestroTheme::textTertiary(), rgb(.40, .43, .48));
    EXPECT_EQ(KestroTheme::accentCritical(), rgb(.94, .27, .24));
    EXPECT_EQ(KestroTheme::accentNominal(), rgb(.06, .73, .51));
    EXPECT_EQ(KestroTheme::surfaceSubtle(), rgb(1, 1, 1, .04));
    EXPECT_EQ(KestroTheme::hairline(), rgb(1, 1, 1, .08));
    EXPECT_EQ(KestroTheme::hairlineStrong(), rgb(1, 1, 1, .14));
}

TEST(KestroTheme, RaisesHairlinesAndSecondaryTextForHighContrast) {
    KestroTheme::setHighContrast(true);
    const QColor hairline = KestroTheme::hairline();
    const QColor strong = KestroTheme::hairlineStrong();
    const QColor secondary = KestroTheme::textSecondary();
    KestroTheme::setHighContrast(false);

    EXPECT_EQ(hairline, rgb(1, 1, 1, .35));
    EXPECT_EQ(strong, rgb(1, 1, 1, .35));
    EXPECT_EQ(secondary, KestroTheme::textPrimary());
    EXPECT_NE(KestroTheme::textSecondary(), KestroTheme::textPrimary());
}

TEST(KestroTheme, FollowsThePaletteOfTheStoreAtEveryAccess) {
    SimulatedUserDefaults defaults;
    UserSettings settings(defaults);
    KestroTheme::bind(&settings);
    const QColor fixed = KestroTheme::textPrimary();

    for (const ThemePalette palette : allCases<ThemePalette>()) {
        settings.themePalette.set(palette);

        EXPECT_EQ(KestroTheme::accentCool(), primaryColor(palette));
        EXPECT_EQ(KestroTheme::accentWarning(), secondaryColor(palette));
        EXPECT_EQ(KestroTheme::ground(), surfaceTint(palette));
        EXPECT_EQ(KestroTheme::surface(), KestroTheme::ground());
        EXPECT_EQ(KestroTheme::textPrimary(), fixed);
    }
    KestroTheme::bind(nullptr);
}

}  // namespace
}  // namespace kestro
