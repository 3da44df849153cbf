#include "tests/support/picture_comparison.h"
#include "tests/support/simulated_services.h"
#include "ui/popover/menu_bar_popover_view.h"
#include "ui/theme/kestro_fonts.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/motion.h"
#include "ui/theme/window_compositing.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <array>

namespace kestro {
namespace {

class PopoverPicture : public testing::Test {
protected:
    PopoverPicture() {
        KestroTheme::bind(&services.settings());
        // Its glyphs are the same in every release of Debian; those of Inter differ.
        KestroFonts::setFamily(QStringLiteral("DejaVu Sans"));
        motion::setReduced(true);
        window_compositing::setOverride(true);
        services.settle();
        services.mac.freeze();
    }
    ~PopoverPicture() override {
        KestroTheme::bind(nullptr);
        KestroFonts::setFamily(QString());
        motion::setReduced(false);
        window_compositing::setOverride(std::nullopt);
    }

    /// The popover on a black background.
    QImage picture() {
        MenuBarPopoverView view(services.services(), PopoverActions{});
        view.show();
        QCoreApplication::processEvents();
        QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image;
    }

    SimulatedServices services;
};

TEST_F(PopoverPicture, ShowsTwoFansAndARunningKeepAwake) {
    services.keepAwake().activate(KeepAwakeDuration::minutes15);
    services.advance(std::chrono::seconds(55));

    expectLikeStoredPicture(picture(), QStringLiteral("popover-awake"));
}

TEST_F(PopoverPicture, ShowsAFanlessMachineInLilacWithAPlume) {
    services.settings().themePalette.set(ThemePalette::lilac);
    services.settings().halftonePattern.set(HalftonePatternStyle::plume);
    services.mac.smc.setFans({});
    services.advance(std::chrono::seconds(2));

    expectLikeStoredPicture(picture(), QStringLiteral("popover-fanless-lilac-plume"));
}

TEST_F(PopoverPicture, ShowsSixFansOnContrastGlass) {
    services.settings().glassMaterial.set(GlassMaterialStyle::hudContrast);
    services.settings().fanSpeedUnit.set(FanSpeedUnit::rawRPM);
    constexpr std::array<float, 6> speeds{1420, 5510, 980, 2210, 640, 7720};
    services.mac.smc.setFans(speeds);
    services.advance(std::chrono::seconds(2));

    expectLikeStoredPicture(picture(), QStringLiteral("popover-six-fans-hud"));
}

/// The popover of ShowsTwoFansAndARunningKeepAwake, drawn with one mistake.
class WrongPopoverPicture : public PopoverPicture {
protected:
    WrongPopoverPicture() {
        services.keepAwake().activate(KeepAwakeDuration::minutes15);
        services.advance(std::chrono::seconds(55));
    }

    static bool isDetected(const QImage& wrong) {
        return !differenceFromStoredPicture(wrong, QStringLiteral("popover-awake")).isInvisible();
    }
};

TEST_F(WrongPopoverPicture, IsDetectedByOneWrongDigit) {
    services.advance(std::chrono::seconds(1));

    EXPECT_TRUE(isDetected(picture()));
}

TEST_F(WrongPopoverPicture, IsDetectedByAMissingPart) {
    services.keepAwake().deactivate();

    EXPECT_TRUE(isDetected(picture()));
}

TEST_F(WrongPopoverPicture, IsDetectedByWrongColours) {
    services.settings().themePalette.set(ThemePalette::lilac);

    EXPECT_TRUE(isDetected(picture()));
}

TEST_F(WrongPopoverPicture, IsDetectedByAShiftOfOnePoint) {
    const QImage right = picture();

    EXPECT_TRUE(isDetected(right.copy(right.rect().translated(0, 1))));
    EXPECT_TRUE(isDetected(right.copy(right.rect().translated(1, 0))));
}

TEST(PictureDifference, IsSmallForEqualPicturesAndLargeForShiftedOnes) {
    QImage picture(100, 100, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QImage moved = picture;
    for (int x = 10; x < 80; ++x) {
        for (int y = 0; y < 10; ++y) {
            picture.setPixelColor(x, 40 + y, Qt::white);
            moved.setPixelColor(x, 44 + y, Qt::white);
        }
    }

    const PictureDifference same = pictureDifference(reducedPicture(picture), reducedPicture(picture));
    const PictureDifference other = pictureDifference(reducedPicture(moved), reducedPicture(picture));

    EXPECT_EQ(same.most, 0);
    EXPECT_GT(other.most, 100);
    EXPECT_GT(other.mean, 5);
    EXPECT_EQ(pictureDifference(reducedPicture(picture.scaled(50, 50)), picture).most, 255);
}

}  // namespace
}  // namespace kestro
