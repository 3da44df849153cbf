#include "tests/ui/popover/popover_fixture.h"
#include "ui/widgets/load_bar.h"

#include <QImage>
#include <QRegion>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <vector>

namespace kestro {
namespace {

TEST_F(PopoverTest, HasRoomForTheFocusRingOfEveryButton) {
    show();

    for (const Button* one : view->findChildren<Button*>()) {
        constexpr double ring = FocusRing::ringGap + FocusRing::ringWidth;
        const QRectF ringed = one->focusArea().adjusted(-ring, -ring, ring, ring);
        EXPECT_TRUE(QRectF(view->rect()).contains(ringed.translated(one->pos())))
            << one->accessibleInfo().name.toStdString();
    }
}

TEST_F(PopoverTest, EveryControlIsLargeEnoughToHit) {
    show();

    for (const Control* control : view->findChildren<Control*>()) {
        const bool isChip = control->accessibleInfo().name == QStringLiteral("Keep Awake");
        EXPECT_GE(control->height(), isChip ? 20 : 22) << control->accessibleInfo().name.toStdString();
        EXPECT_GE(control->width(), 22);
    }
}

/// Fixture with the widest glyphs and the largest numbers everywhere.
class CrowdedPopoverTest : public PopoverTest {
protected:
    CrowdedPopoverTest()
        : PopoverTest([](SimulatedMac& mac) {
              mac.systemControl.texts["hw.perflevel0.name"] = "MMMMMMMMMMMMMMMMMMMMMMMM";
              mac.systemControl.texts["hw.perflevel1.name"] = "<b>&MMMM</b>";
              mac.fileSystem.root = {1'048'576, 9'000'000'000, 8'900'000'000};
              mac.processInfo.memory = 1ULL << 60;
          }) {}
};

TEST_F(CrowdedPopoverTest, KeepsEveryPartInsideThePanelWithoutOverlaps) {
    services.keepAwake().activate(KeepAwakeDuration::hours4);
    services.settings().fanSpeedUnit.set(FanSpeedUnit::rawRPM);
    services.settings().temperatureUnit.set(TemperatureUnit::fahrenheit);
    services.mac.smc.setFans(std::array{65'000.0F, 65'000.0F, 65'000.0F, 65'000.0F, 65'000.0F, 65'000.0F});
    show();
    sample();

    std::vector<const View*> parts;
    for (const View* part : view->findChildren<View*>(QString(), Qt::FindDirectChildrenOnly)) {
        const bool isBar = part->inherits("kestro::LoadBar");
        if (part->isVisible() && !isBar) {
            parts.push_back(part);
        }
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
        EXPECT_TRUE(view->rect().contains(parts[i]->geometry())) << parts[i]->accessibleInfo().name.toStdString();
        for (std::size_t j = i + 1; j < parts.size(); ++j) {
            EXPECT_FALSE(parts[i]->geometry().intersects(parts[j]->geometry()))
                << parts[i]->accessibleInfo().name.toStdString() << " / "
                << parts[j]->accessibleInfo().name.toStdString();
        }
    }
    EXPECT_TRUE(line(QStringLiteral("<b>&MMMM</b>, ")));
}

/// The pixels that a part paints, in the panel's coordinates.
QRegion inkOf(QWidget& part) {
    QImage image(part.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    part.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    QRegion ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0) {
                ink += QRect(x, y, 1, 1);
            }
        }
    }
    return ink.translated(part.pos());
}

TEST_F(CrowdedPopoverTest, KeepsTheLabelsAndValuesOfTheClustersOffTheirBars) {
    services.mac.machHost.coreLoads.assign(services.mac.machHost.coreLoads.size(), 100);
    show();
    sample();

    const auto bars = view->findChildren<LoadBar*>();
    ASSERT_EQ(bars.size(), 2);
    for (ReadoutLine* const cluster : {line(QStringLiteral("MMMM")), line(QStringLiteral("<b>&MMMM</b>"))}) {
        const QRegion ink = inkOf(*cluster);
        EXPECT_FALSE(ink.isEmpty());
        for (const LoadBar* bar : bars) {
            EXPECT_FALSE(ink.intersects(bar->geometry())) << cluster->label().toStdString();
        }
    }
}

}  // namespace
}  // namespace kestro
