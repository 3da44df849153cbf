#include "ui/decorations/studio_halftone_field.h"

#include "ui/decorations/halftone_fields.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

namespace kestro {
namespace {

constexpr std::array shapes{HalftoneShape::band, HalftoneShape::aura, HalftoneShape::corner, HalftoneShape::rule};

std::vector<HalftoneDot> dotsOf(const StudioHalftoneField& field, QSizeF size, HalftoneIntensity intensity) {
    std::vector<HalftoneDot> dots;
    field.forEachDot(size, intensity, [&dots](const HalftoneDot& dot) { dots.push_back(dot); });
    return dots;
}

void expectDot(const HalftoneDot& dot, const HalftoneDot& expected) {
    EXPECT_NEAR(dot.x, expected.x, 1e-6);
    EXPECT_NEAR(dot.y, expected.y, 1e-6);
    EXPECT_NEAR(dot.radius, expected.radius, 1e-8);
    EXPECT_EQ(dot.ink, expected.ink);
    EXPECT_NEAR(dot.opacity, expected.opacity, 1e-8);
}

TEST(HalftoneFraction, MatchesItsGoldenValues) {
    EXPECT_DOUBLE_EQ(halftoneFraction(0), 0);
    EXPECT_DOUBLE_EQ(halftoneFraction(1), 1.4668330550193787e-08);
    EXPECT_DOUBLE_EQ(halftoneFraction(0x6D2B79F5), 0.118871727026999);
    EXPECT_DOUBLE_EQ(halftoneFraction(0xFFFFFFFF), 0.0019372690003365278);
}

TEST(HalftoneFraction, IsAlwaysBelowOne) {
    for (std::uint32_t state = 0; state < 200'000; ++state) {
        const double fraction = halftoneFraction(state * 21'473U);

        ASSERT_GE(fraction, 0);
        ASSERT_LT(fraction, 1);
    }
}

TEST(StudioHalftoneField, BandMatchesItsGoldenDots) {
    const auto [field, area] = popoverHalftone(HalftonePatternStyle::band);

    const auto dots = dotsOf(field, area.size(), HalftoneIntensity::standard);

    ASSERT_EQ(dots.size(), 24);
    expectDot(dots[0], {72.1762571058, -12.2359770834, 1.66977511815, HalftoneInk::cyan, 0.288044390257});
    expectDot(dots[1], {25.2681381882, -13.4843537202, 2.0613462978, HalftoneInk::cyan, 0.348417806226});
    expectDot(dots[23], {0.0385210765628, 25.9064988829, 0.823758119949, HalftoneInk::cyan, 0.322882926845});
}

TEST(StudioHalftoneField, CornerMatchesItsGoldenDots) {
    const auto [field, area] = popoverHalftone(HalftonePatternStyle::plume);

    const auto dots = dotsOf(field, area.size(), HalftoneIntensity::subtle);

    ASSERT_EQ(dots.size(), 41);
    expectDot(dots[0], {62.8761520746, 183.447408561, 0.724690661031, HalftoneInk::yellow, 0.0908354145839});
    expectDot(dots[1], {155.699727014, 97.7607920366, 1.30710396468, HalftoneInk::paper, 0.0925230218918});
    expectDot(dots[40], {328.343532961, 321.527297493, 4.93043448388, HalftoneInk::cyan, 0.0702254782956});
}

TEST(StudioHalftoneField, AuraMatchesItsGoldenDots) {
    const auto [field, area] = popoverHalftone(HalftonePatternStyle::ambient);

    const auto dots = dotsOf(field, area.size(), HalftoneIntensity::bold);

    ASSERT_EQ(dots.size(), 41);
    expectDot(dots[0], {192.296768203, 65.9595526525, 0.719989602286, HalftoneInk::cyan, 0.465195545054});
    expectDot(dots[1], {245.086624761, 116.509624383, 3.85406474908, HalftoneInk::paper, 0.36741620233});
    expectDot(dots[40], {205.898553267, 48.4469417631, 3.51348107089, HalftoneInk::yellow, 0.234919895364});
}

TEST(StudioHalftoneField, RuleMatchesItsGoldenDots) {
    const StudioHalftoneField field{HalftoneShape::rule, 99, 64, 0.5, 1, 4, 0, 0.4};

    const auto dots = dotsOf(field, {300, 120}, HalftoneIntensity::standard);

    ASSERT_EQ(dots.size(), 24);
    expectDot(dots[0], {94.3376271311, 69.2861229484, 2.68748428885, HalftoneInk::magenta, 0.207312231106});
    expectDot(dots[1], {95.7077283888, 64.5911649829, 3.80037095983, HalftoneInk::cyan, 0.221577178355});
    expectDot(dots[23], {139.695416561, 47.8063957645, 1.58379606426, HalftoneInk::yellow, 0.345919314906});
}

TEST(StudioHalftoneField, DrawsNothingWhenTheIntensityIsOff) {
    for (const HalftoneShape shape : shapes) {
        const StudioHalftoneField field{shape, 7, 1000, 1, 1, 9, 0.5, 0.5};

        EXPECT_TRUE(dotsOf(field, {500, 500}, HalftoneIntensity::off).empty());
    }
}

TEST(StudioHalftoneField, HasOneDotPerAreaWithinItsLimits) {
    StudioHalftoneField field;
    field.count = 100;
    EXPECT_EQ(field.dotCount({40, 40}), 24);
    field.count = 10;
    EXPECT_EQ(field.dotCount({40, 40}), 10);
    field.count = 500;
    EXPECT_EQ(field.dotCount({1000, 520}), 200);
    EXPECT_EQ(field.dotCount({1e9, 1e9}), 500);
    // 79300 / 2600 is exactly 30.5, which rounds away from zero.
    EXPECT_EQ(field.dotCount({793, 100}), 31);
}

TEST(StudioHalftoneField, DrawsNothingOnAnEmptyCanvasOrWithoutACount) {
    StudioHalftoneField field;
    field.count = 100;
    EXPECT_EQ(field.dotCount({0, 40}), 0);
    EXPECT_EQ(field.dotCount({40, -1}), 0);
    EXPECT_EQ(field.dotCount({std::numeric_limits<double>::quiet_NaN(), 40}), 0);
    field.count = 0;
    EXPECT_EQ(field.dotCount({400, 400}), 0);
    field.count = -5;
    EXPECT_EQ(field.dotCount({400, 400}), 0);
}

TEST(StudioHalftoneField, RepeatsItsDotsForTheSameSeedOnly) {
    for (const HalftoneShape shape : shapes) {
        StudioHalftoneField field{shape, 4711, 80, 0.5, 1, 6, 0.5, 0.5};
        const auto first = dotsOf(field, {300, 200}, HalftoneIntensity::standard);
        const auto again = dotsOf(field, {300, 200}, HalftoneIntensity::standard);
        field.seed = 4712;
        const auto other = dotsOf(field, {300, 200}, HalftoneIntensity::standard);

        EXPECT_EQ(first, again);
        EXPECT_NE(first, other);
    }
}

TEST(StudioHalftoneField, CornerConcentratesItsDotsNearTheFocus) {
    const StudioHalftoneField field{HalftoneShape::corner, 12, 200, 0.5, 1, 3, 0.7, 0.2};

    const auto dots = dotsOf(field, {400, 400}, HalftoneIntensity::standard);
    const auto inCorner =
        std::ranges::count_if(dots, [](const HalftoneDot& dot) { return dot.x > 200 && dot.y < 200; });

    EXPECT_GT(inCorner, static_cast<std::ptrdiff_t>(dots.size()) / 2);
    for (const HalftoneDot& dot : dots) {
        EXPECT_GE(dot.x, 400 - 360);
        EXPECT_LE(dot.y, 360 * 0.8);
    }
}

TEST(StudioHalftoneField, LargeDotsAreFainterAndOpacityVariesWithinItsLimits) {
    const StudioHalftoneField field{HalftoneShape::aura, 5, 300, 0.8, 1, 5, 0.5, 0.5};

    for (const HalftoneDot& dot : dotsOf(field, {1200, 800}, HalftoneIntensity::standard)) {
        const double q = (dot.radius - 1) / 4;
        const double brightest = 0.8 * (1 - q * 0.45);
        EXPECT_LE(dot.opacity, brightest + 1e-12);
        EXPECT_GE(dot.opacity, brightest * 0.55 - 1e-12);
    }
}

TEST(HalftoneFactor, IsTheIntensitysOpacityOverTheStandardOne) {
    EXPECT_EQ(halftoneFactor(HalftoneIntensity::off), 0.0);
    EXPECT_EQ(halftoneFactor(HalftoneIntensity::subtle), 0.48);
    EXPECT_EQ(halftoneFactor(HalftoneIntensity::standard), 1.0);
    EXPECT_EQ(halftoneFactor(HalftoneIntensity::bold), 1.8);
    for (const HalftoneIntensity intensity : allCases<HalftoneIntensity>()) {
        EXPECT_NEAR(halftoneFactor(intensity), alpha(intensity) / alpha(HalftoneIntensity::standard), 1e-12);
    }
}

TEST(HalftoneInkColor, MatchesThePrintInks) {
    EXPECT_EQ(halftoneInkColor(HalftoneInk::cyan), QColor::fromRgbF(0.0F, 0.682F, 0.937F));
    EXPECT_EQ(halftoneInkColor(HalftoneInk::magenta), QColor::fromRgbF(0.925F, 0.0F, 0.549F));
    EXPECT_EQ(halftoneInkColor(HalftoneInk::yellow), QColor::fromRgbF(1.0F, 0.949F, 0.0F));
    EXPECT_EQ(halftoneInkColor(HalftoneInk::paper), QColor::fromRgbF(1, 1, 1));
}

TEST(HalftoneFields, PatternsSelectTheirShapes) {
    EXPECT_EQ(popoverHalftone(HalftonePatternStyle::band).field.shape, HalftoneShape::band);
    EXPECT_EQ(popoverHalftone(HalftonePatternStyle::plume).field.shape, HalftoneShape::corner);
    EXPECT_EQ(popoverHalftone(HalftonePatternStyle::ambient).field.shape, HalftoneShape::aura);
    EXPECT_EQ(tileHalftone(HalftonePatternStyle::plume, {240, 86}).area, QRectF(90, -64, 150, 150));
    EXPECT_EQ(tileHalftone(HalftonePatternStyle::ambient, {240, 86}).area, QRectF(55, -22, 130, 130));
    EXPECT_EQ(dashboardHalftone({1260, 480}).area, QRectF(0, 0, 420, 58));
    EXPECT_EQ(dashboardHalftone({740, 420}).area, QRectF(0, 0, 370, 58));
}

TEST(HalftoneFields, HaveTheirExactValues) {
    using enum HalftonePatternStyle;
    const QSizeF tile(240, 86);

    EXPECT_EQ(popoverHalftone(band),
              (PlacedHalftoneField{{HalftoneShape::band, 1814, 64, 0.55, 0.8, 5, 0, 0}, QRectF(0, 0, 200, 40)}));
    EXPECT_EQ(popoverHalftone(plume),
              (PlacedHalftoneField{{HalftoneShape::corner, 777, 64, 0.32, 0.7, 8, 1, 1}, QRectF(0, 0, 330, 325)}));
    EXPECT_EQ(
        popoverHalftone(ambient),
        (PlacedHalftoneField{{HalftoneShape::aura, 2225, 64, 0.28, 0.7, 7, 0.5, 0.5}, QRectF(0, 0, 330, 325)}));
    EXPECT_EQ(
        dashboardHalftone({1260, 480}),
        (PlacedHalftoneField{{HalftoneShape::band, 1347, 100, 0.55, 0.8, 6.5, 0, 0}, QRectF(0, 0, 420, 58)}));
    EXPECT_EQ(tileHalftone(band, tile),
              (PlacedHalftoneField{{HalftoneShape::band, 1618, 64, 0.6, 0.8, 5, 0, 0}, QRectF(0, 0, 200, 40)}));
    EXPECT_EQ(tileHalftone(plume, tile), (PlacedHalftoneField{{HalftoneShape::corner, 1618, 64, 0.6, 0.8, 6, 1, 1},
                                                              QRectF(90, -64, 150, 150)}));
    EXPECT_EQ(tileHalftone(ambient, tile),
              (PlacedHalftoneField{{HalftoneShape::aura, 1618, 64, 0.6, 0.8, 5.5, 0.5, 0.5},
                                   QRectF(55, -22, 130, 130)}));
}

}  // namespace
}  // namespace kestro
