#include "ui/decorations/glass_surface.h"

#include "core/settings/user_settings.h"
#include "platform/simulated/simulated_user_defaults.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/window_compositing.h"
#include "ui/theme/window_shape.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QPainter>
#include <QTimerEvent>

#include <gtest/gtest.h>

namespace kestro {
namespace {

class InkedSurface : public GlassSurface {
public:
    explicit InkedSurface(UserSettings& settings) : GlassSurface(settings, 10) { resize(330, 325); }

protected:
    std::optional<PlacedHalftoneField> halftone() const override {
        return popoverHalftone(settings().halftonePattern.get());
    }
    void paintEvent(QPaintEvent* event) override {
        GlassSurface::paintEvent(event);
        ++paintings;
    }

public:
    int paintings = 0;
};

class GlassSurfaceTest : public testing::Test {
protected:
    GlassSurfaceTest() {
        KestroTheme::bind(&settings);
        settings.halftoneIntensity.set(HalftoneIntensity::off);
        settings.progressiveBlurFade.set(false);
    }
    ~GlassSurfaceTest() override {
        KestroTheme::bind(nullptr);
        KestroTheme::setHighContrast(false);
        window_compositing::setOverride(std::nullopt);
    }

    QImage picture() {
        surface.show();
        QCoreApplication::processEvents();
        return grabbed();
    }

    /// The window's content on a transparent background.
    QImage grabbed() {
        QImage image(surface.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        surface.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image;
    }

    SimulatedUserDefaults defaults;
    UserSettings settings{defaults};
    InkedSurface surface{settings};
};

TEST_F(GlassSurfaceTest, IsTranslucentWhereWindowsAreComposited) {
    window_compositing::setOverride(true);

    const QImage image = picture();

    EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << "the corner is cut";
    EXPECT_NEAR(qAlpha(image.pixel(165, 160)) / 255.0, 0.94, 0.02);
    EXPECT_TRUE(surface.mask().isEmpty());
}

TEST_F(GlassSurfaceTest, IsOpaqueWithShapedCornersWithoutCompositing) {
    window_compositing::setOverride(false);
    settings.progressiveBlurFade.set(true);

    const QImage image = picture();

    EXPECT_EQ(qAlpha(image.pixel(165, 160)), 255);
    EXPECT_EQ(qAlpha(image.pixel(165, 1)), 255) << "no edge fade without compositing";
    EXPECT_FALSE(surface.mask().contains(QPoint(0, 0)));
    EXPECT_TRUE(surface.mask().contains(QPoint(12, 0)));
    EXPECT_TRUE(surface.mask().contains(QPoint(165, 160)));
}

TEST_F(GlassSurfaceTest, DetectsTheEndAndStartOfACompositingManagerWhileShown) {
    window_compositing::setOverride(true);
    picture();
    const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(&surface);
    ASSERT_EQ(timers.size(), 1);
    EXPECT_GE(timers[0].interval, 2000);
    const auto lookAgain = [&] {
        QTimerEvent event(timers[0].timerId);
        QCoreApplication::sendEvent(&surface, &event);
        return qAlpha(grabbed().pixel(165, 160));
    };

    window_compositing::setOverride(false);
    EXPECT_EQ(lookAgain(), 255);
    EXPECT_FALSE(surface.mask().isEmpty());
    window_compositing::setOverride(true);
    EXPECT_LT(lookAgain(), 255);
    EXPECT_TRUE(surface.mask().isEmpty());

    const int before = surface.renderCount();
    lookAgain();
    EXPECT_EQ(surface.renderCount(), before) << "nothing changed";
    surface.hide();
    EXPECT_TRUE(QAbstractEventDispatcher::instance()->registeredTimers(&surface).isEmpty());
}

TEST_F(GlassSurfaceTest, ChecksForACompositingManagerOnlyWhereItCanChange) {
    picture();

    EXPECT_TRUE(QAbstractEventDispatcher::instance()->registeredTimers(&surface).isEmpty());
}

TEST_F(GlassSurfaceTest, DoesNotCheckCompositingOnResize) {
    window_compositing::setOverride(true);
    picture();
    window_compositing::setOverride(false);

    surface.resize(400, 300);
    QCoreApplication::processEvents();

    EXPECT_TRUE(surface.mask().isEmpty());
}

TEST_F(GlassSurfaceTest, KeepsItsShapedCornersWhenResized) {
    window_compositing::setOverride(false);
    picture();

    surface.resize(400, 300);
    EXPECT_EQ(surface.mask(), roundedRegion({0, 0, 400, 300}, 10));
    surface.setCornerRadius(0);
    EXPECT_EQ(surface.mask(), QRegion(0, 0, 400, 300));
}

TEST_F(GlassSurfaceTest, DoesNotRepaintWhenItsWindowGainsOrLosesTheFocus) {
    picture();
    QCoreApplication::processEvents();
    const int before = surface.paintings;

    QEvent change(QEvent::ActivationChange);
    QCoreApplication::sendEvent(&surface, &change);
    QCoreApplication::processEvents();

    EXPECT_EQ(surface.paintings, before);
}

TEST_F(GlassSurfaceTest, IsRenderedOnceForUnchangedInputs) {
    picture();
    const int before = surface.renderCount();

    for (int i = 0; i < 20; ++i) {
        grabbed();
    }

    EXPECT_EQ(surface.renderCount(), before);
}

TEST_F(GlassSurfaceTest, FollowsEverySettingThatAffectsIt) {
    settings.halftoneIntensity.set(HalftoneIntensity::standard);
    QImage last = picture();
    const auto expectChange = [&](const char* what) {
        const QImage next = grabbed();
        EXPECT_NE(next, last) << what;
        last = next;
    };

    settings.themePalette.set(ThemePalette::lilac);
    expectChange("palette");
    settings.glassMaterial.set(GlassMaterialStyle::hudContrast);
    expectChange("material");
    settings.glassMaterial.set(GlassMaterialStyle::subtleTint);
    expectChange("material");
    settings.halftoneIntensity.set(HalftoneIntensity::bold);
    expectChange("intensity");
    settings.halftonePattern.set(HalftonePatternStyle::ambient);
    expectChange("pattern");
    settings.progressiveBlurFade.set(true);
    expectChange("edge fade");
}

TEST_F(GlassSurfaceTest, DistinguishesTheThreeMaterials) {
    QList<QRgb> tops;
    for (const GlassMaterialStyle style : allCases<GlassMaterialStyle>()) {
        settings.glassMaterial.set(style);
        tops.append(picture().pixel(20, 20));
    }
    const auto distance = [](QRgb a, QRgb b) {
        return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
    };

    EXPECT_GT(distance(tops[0], tops[1]), 12);
    EXPECT_GT(distance(tops[0], tops[2]), 6);
    EXPECT_GT(distance(tops[1], tops[2]), 12);
}

TEST_F(GlassSurfaceTest, ReleasesItsBackdropWhileHiddenAndRendersItAgain) {
    picture();
    surface.hide();
    const int before = surface.renderCount();

    picture();

    EXPECT_EQ(surface.renderCount(), before + 1);
}

TEST_F(GlassSurfaceTest, IsPlainAndOpaqueWithHighContrast) {
    KestroTheme::setHighContrast(true);
    const QImage plain = picture();
    settings.halftoneIntensity.set(HalftoneIntensity::bold);

    const QImage inked = grabbed();

    EXPECT_EQ(inked, plain);
    EXPECT_EQ(qAlpha(inked.pixel(165, 160)), 255);
}

TEST_F(GlassSurfaceTest, FadesItsEdgesOnlyWhenEnabled) {
    window_compositing::setOverride(true);
    const int sharp = qAlpha(picture().pixel(165, 2));
    settings.progressiveBlurFade.set(true);

    const int faded = qAlpha(grabbed().pixel(165, 2));

    EXPECT_LT(faded, sharp * 0.7);
}

TEST(VisualEffectBlur, UpdatesAnExistingViewInPlace) {
    VisualEffectBlur blur{nsMaterial(GlassMaterialStyle::deepFrosted)};
    const auto view = blur.makeNSView();
    EXPECT_EQ(view->material(), VisualEffectMaterial::underWindowBackground);

    blur.material = nsMaterial(GlassMaterialStyle::subtleTint);
    blur.blendingMode = VisualEffectBlendingMode::withinWindow;
    blur.state = VisualEffectState::inactive;
    blur.updateNSView(*view);

    EXPECT_EQ(view->material(), VisualEffectMaterial::popover);
    EXPECT_EQ(view->blendingMode(), VisualEffectBlendingMode::withinWindow);
    EXPECT_EQ(view->state(), VisualEffectState::inactive);
}

TEST(VisualEffectBlur, HasHalfItsWashWhileUnlit) {
    const auto redOf = [](VisualEffectMaterial material, VisualEffectState state) {
        VisualEffectView view;
        view.setMaterial(material);
        view.setBlendingMode(VisualEffectBlendingMode::withinWindow);
        view.setState(state);
        QImage image(200, 200, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        view.paint(painter, QRectF(0, 0, 200, 200), true);
        painter.end();
        return qRed(image.pixel(2, 2));
    };
    SimulatedUserDefaults defaults;
    UserSettings settings(defaults);
    KestroTheme::bind(&settings);
    const double ground = KestroTheme::ground().red();

    for (const GlassMaterialStyle style : allCases<GlassMaterialStyle>()) {
        const double lit = redOf(nsMaterial(style), VisualEffectState::active);
        const double unlit = redOf(nsMaterial(style), VisualEffectState::inactive);
        EXPECT_GE(std::abs(lit - ground), 4) << "there is a wash";
        EXPECT_NEAR(unlit - ground, (lit - ground) / 2, 1);
    }
    KestroTheme::bind(nullptr);
}

TEST(VisualEffectBlur, IsLitAlwaysOrWhileItsWindowIsActive) {
    VisualEffectView view;

    view.setState(VisualEffectState::active);
    EXPECT_TRUE(view.isLit(false));
    view.setState(VisualEffectState::followsWindowActiveState);
    EXPECT_FALSE(view.isLit(false));
    EXPECT_TRUE(view.isLit(true));
    view.setState(VisualEffectState::inactive);
    EXPECT_FALSE(view.isLit(true));
}

}  // namespace
}  // namespace kestro
