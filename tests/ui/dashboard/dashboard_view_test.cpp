#include "ui/dashboard/dashboard_view.h"

#include "tests/ui/dashboard/dashboard_fixture.h"
#include "ui/controls/text_label.h"
#include "ui/widgets/core_matrix_view.h"

#include <QApplication>
#include <QImage>

#include <gtest/gtest.h>

#include <cstdlib>

namespace kestro {
namespace {

TEST_F(DashboardViewTest, HasTheIdealSizeForItsSections) {
    make();
    EXPECT_EQ(view_->sizeHint(), QSize(1260, 480));
    EXPECT_EQ(view_->minimumSizeHint(), QSize(720, 420));

    machine_->settings().showNetwork.set(false);
    machine_->settings().showTopProcesses.set(false);
    machine_->settings().showMemory.set(false);

    EXPECT_EQ(view_->sizeHint(), QSize(788, 480));
}

TEST_F(DashboardViewTest, CallsItsActionsFromTheHeaderButtons) {
    make();
    show(1260, 480);

    headerButton(QStringLiteral("Settings")).click();
    headerButton(QStringLiteral("Toggle Windowed Full Screen")).click();
    headerButton(QStringLiteral("Close Dashboard")).click();

    EXPECT_EQ(asked_, "sfc");
}

TEST_F(DashboardViewTest, ShowsAndTogglesThePin) {
    make();
    show(1260, 480);
    Button& pin = headerButton(QStringLiteral("Pin Window on Top"));

    pin.click();
    EXPECT_TRUE(machine_->settings().isPinned.get());
    EXPECT_TRUE(pin.isOn());
    EXPECT_EQ(pin.help(), QStringLiteral("Unpin Window"));
    machine_->settings().isPinned.set(false);

    EXPECT_FALSE(pin.isOn());
    EXPECT_EQ(pin.help(), QStringLiteral("Pin Window on Top"));
}

TEST_F(DashboardViewTest, FollowsTheSectionSwitchesAtOnce) {
    make();
    show(1260, 480);
    EXPECT_EQ(section<ComputeSection>().geometry(), QRect(20, 58, 230, 382));

    machine_->settings().showCooling.set(false);
    machine_->settings().showNetwork.set(false);

    EXPECT_FALSE(section<CoolingSection>().isVisible());
    EXPECT_TRUE(section<MemorySection>().isVisible());
    EXPECT_GT(section<ComputeSection>().width(), 380);
    EXPECT_LT(section<ComputeSection>().geometry().right(), section<MemorySection>().x());
}

TEST_F(DashboardViewTest, HasSquareCornersInFullScreen) {
    make();
    show(1260, 480);
    const auto corner = [this] { return qAlpha(view_->grab().toImage().pixel(1, 1)); };
    const int rounded = corner();

    view_->setWindowState(Qt::WindowFullScreen);
    QApplication::processEvents();
    const int square = corner();
    view_->setWindowState(Qt::WindowNoState);
    QApplication::processEvents();

    EXPECT_EQ(rounded, 0);
    EXPECT_GT(square, 0);
    EXPECT_EQ(corner(), 0);
}

TEST_F(DashboardViewTest, ShowsASentenceWithoutSections) {
    make();
    UserSettings& settings = machine_->settings();
    for (Setting<bool>* one : {&settings.showCompute, &settings.showCooling, &settings.showMemory,
                               &settings.showNetwork, &settings.showTopProcesses}) {
        one->set(false);
    }
    show(788, 480);

    for (const DashboardSection* one : view_->findChildren<DashboardSection*>()) {
        EXPECT_FALSE(one->isVisible());
    }
    const auto sentence = [this] {
        QString shown;
        for (const TextLabel* one : view_->findChildren<TextLabel*>(QString(), Qt::FindDirectChildrenOnly)) {
            shown += one->isVisible() && one->text().endsWith(QLatin1Char('.')) ? one->text() : QString();
        }
        return shown;
    };
    EXPECT_EQ(sentence(), QStringLiteral("Every section is off. Choose some in Settings, under Dashboard."));
    settings.showCompute.set(true);
    EXPECT_EQ(sentence(), QString());
}

TEST_F(DashboardViewTest, RecoloursOnlyAccentsAndGroundWithThePalette) {
    make([](SimulatedMac& mac) { mac.machHost.coreLoads.assign(mac.machHost.coreLoads.size(), 60); });
    UserSettings& settings = machine_->settings();
    settings.themePalette.set(ThemePalette::cryogenic);
    settings.glassMaterial.set(GlassMaterialStyle::hudContrast);
    settings.halftoneIntensity.set(HalftoneIntensity::off);
    show(1260, 480);
    const QWidget& cores = *section<ComputeSection>().findChild<CoreMatrixView*>();
    const QPoint bar = cores.mapTo(view_.get(), QPoint(2, 0));
    // Counts the pixels of an area that nearly match a colour.
    const auto count = [](const QImage& image, const QRect& area, const QColor& color) {
        int found = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                found += std::abs(pixel.red() - color.red()) + std::abs(pixel.green() - color.green()) +
                             std::abs(pixel.blue() - color.blue()) <
                         12;
            }
        }
        return found;
    };
    const auto shot = [this] {
        QApplication::processEvents();
        return view_->grab().toImage().convertToFormat(QImage::Format_ARGB32);
    };
    const QRect matrix(bar, QSize(cores.width() - 2, cores.height()));
    const QRect wordmark(40, 8, 120, 28);
    const QRect dot(20, view_->height() - 28, 8, 28);
    const QPoint empty(view_->width() / 2, 20);

    const QImage before = shot();
    settings.themePalette.set(ThemePalette::lilac);
    const QImage after = shot();

    const QColor cool = primaryColor(ThemePalette::cryogenic);
    const QColor lilac = primaryColor(ThemePalette::lilac);
    EXPECT_GT(count(before, matrix, cool), 20);
    EXPECT_EQ(count(before, matrix, lilac), 0);
    EXPECT_EQ(count(after, matrix, cool), 0);
    EXPECT_GT(count(after, matrix, lilac), 20);
    EXPECT_NE(before.pixelColor(empty), after.pixelColor(empty));
    for (const QImage& image : {before, after}) {
        EXPECT_GT(count(image, wordmark, KestroTheme::textPrimary()), 20) << "text";
        EXPECT_GT(count(image, dot, KestroTheme::accentNominal()), 4) << "dot of the running engine";
    }
}

}  // namespace
}  // namespace kestro
