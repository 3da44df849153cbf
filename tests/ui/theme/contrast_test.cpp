#include "core/settings/user_settings.h"
#include "platform/simulated/simulated_user_defaults.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/visual_effect_blur.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace kestro {
namespace {

constexpr double readable = 4.5;

/// Relative luminance, as WCAG 2 defines it.
double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const double brighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (brighter + 0.05) / (darker + 0.05);
}

class Contrast : public testing::TestWithParam<ThemePalette> {
protected:
    Contrast() {
        KestroTheme::bind(&settings);
        settings.themePalette.set(GetParam());
    }
    ~Contrast() override { KestroTheme::bind(nullptr); }

    SimulatedUserDefaults defaults;
    UserSettings settings{defaults};
};

TEST_P(Contrast, ValuesAreReadableOnTheGround) {
    const QColor ground = KestroTheme::ground();

    EXPECT_GT(contrast(KestroTheme::textPrimary(), ground), 15);
    EXPECT_GT(contrast(KestroTheme::textSecondary(), ground), 6);
    EXPECT_GT(contrast(KestroTheme::textTertiary(), ground), 3);
    for (const QColor& accent : {KestroTheme::accentCool(), KestroTheme::accentWarning(),
                                 KestroTheme::accentCritical(), KestroTheme::accentNominal()}) {
        EXPECT_GT(contrast(accent, ground), readable) << accent.name().toStdString();
    }
}

TEST_P(Contrast, TextIsReadableOnEveryGlassOverAWhiteWallpaper) {
    for (const GlassMaterialStyle style : allCases<GlassMaterialStyle>()) {
        QImage image(330, 325, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        VisualEffectBlur{nsMaterial(style)}.makeNSView()->paint(painter, QRectF(image.rect()), true);
        painter.end();

        for (int y = 0; y < image.height(); y += 4) {
            const QColor ground = image.pixelColor(4, y);
            EXPECT_GT(contrast(KestroTheme::textPrimary(), ground), readable) << rawValue(style) << " at " << y;
            EXPECT_GT(contrast(KestroTheme::textSecondary(), ground), readable) << rawValue(style) << " at " << y;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Palettes, Contrast, testing::ValuesIn(allCases<ThemePalette>()));

}  // namespace
}  // namespace kestro
