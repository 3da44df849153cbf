#include "tests/ui/dashboard/dashboard_fixture.h"
#include "ui/decorations/orvanel_watermark.h"
#include "ui/widgets/core_matrix_view.h"

#include <QTest>

namespace kestro {
namespace {

class LargeDashboard : public DashboardViewTest {
protected:
    RuledIndexRow& row(const QString& label) {
        for (RuledIndexRow* one : view_->findChildren<RuledIndexRow*>()) {
            if (one->content().label == label) {
                return *one;
            }
        }
        throw std::runtime_error("no such row: " + label.toStdString());
    }

    /// The y of every pixel that `widget` paints in its column `x`.
    static std::vector<int> markedRows(QWidget& widget, int x) {
        QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        std::vector<int> marked;
        for (int y = 0; y < image.height(); ++y) {
            if (qAlpha(image.pixel(x, y)) > 0) {
                marked.push_back(y);
            }
        }
        return marked;
    }
};

TEST_F(LargeDashboard, EnlargesHeaderSectionsAndFooterAlike) {
    make();
    show(1920, 1080);

    EXPECT_EQ(view_->zoom(), 1.75);
    EXPECT_EQ(headerButton(QStringLiteral("Settings")).size(), QSize(49, 49));
    EXPECT_EQ(headerButton(QStringLiteral("Close Dashboard")).geometry().right(), 1920 - 35 - 1);
    EXPECT_EQ(section<ComputeSection>().x(), 35);
    EXPECT_NEAR(section<ComputeSection>().y(), 58 * 1.75, 0.5);
    const auto* mark = view_->findChild<OrvanelWatermark*>();
    EXPECT_NEAR(mark->height(), 11 * 1.75, 1);
    EXPECT_NEAR(mark->geometry().center().x(), 960, 1);
}

TEST_F(LargeDashboard, IsNotEnlargedUpToTheIdealSize) {
    make();
    show(1260, 480);

    EXPECT_EQ(view_->zoom(), 1);
    EXPECT_EQ(headerButton(QStringLiteral("Settings")).size(), QSize(28, 28));
}

TEST_F(LargeDashboard, FollowsTheNumberOfSections) {
    make();
    show(1500, 1000);
    const double all = view_->zoom();

    machine_->settings().showCooling.set(false);
    machine_->settings().showNetwork.set(false);

    EXPECT_GT(view_->zoom(), all);
}

TEST_F(LargeDashboard, KeepsEachRuleNearItsLabel) {
    make();
    show(1920, 1080);
    RuledIndexRow& wired = row(QStringLiteral("Wired"));
    RuledIndexRow& compressed = row(QStringLiteral("Compressed"));

    const int rule = wired.y() + qRound(18 * 1.75);
    const std::vector<int> marked = markedRows(wired, wired.width() / 2);

    ASSERT_FALSE(marked.empty());
    EXPECT_NEAR(wired.y() + marked.front(), rule, 1);
    EXPECT_LT(rule - wired.y(), compressed.y() - rule + 14);
}

TEST_F(LargeDashboard, EnlargesGaugesAsFarAsTheirHalfAllows) {
    make();
    show(3440, 1440);
    const MetricGauge* wide = section<MemorySection>().findChild<MetricGauge*>();
    EXPECT_NEAR(wide->zoom(), 1.23, 0.02);

    view_->resize(1920, 1080);

    EXPECT_EQ(wide->zoom(), 1);
}

TEST_F(LargeDashboard, PressesTheEnlargedHeaderButtons) {
    make();
    show(1920, 1080);

    QTest::mouseClick(&headerButton(QStringLiteral("Settings")), Qt::LeftButton, {}, QPoint(46, 46));

    EXPECT_EQ(asked_, "s");
}

TEST_F(LargeDashboard, SpeaksTheCoresWhereTheyAreShown) {
    make();
    show(1920, 1080);
    const auto* matrix = section<ComputeSection>().findChild<CoreMatrixView*>();

    const auto parts = matrix->accessibleParts();

    ASSERT_EQ(parts.size(), 12U);
    EXPECT_NEAR(parts[2].area.right(), matrix->width(), 2);
}

TEST_F(LargeDashboard, RepaintsOnlyTheValueThatChanged) {
    make([](SimulatedMac& mac) { mac.freeze(); });
    show(1920, 1080);
    PaintedRegion region(*view_);

    machine_->mac.powerSources.setBattery(61, false);
    machine_->advance(std::chrono::milliseconds(1100));
    QApplication::processEvents();

    EXPECT_TRUE(section<IOSection>().geometry().contains(region.painted.boundingRect()));
    EXPECT_LT(region.painted.boundingRect().height(), 80);
}

}  // namespace
}  // namespace kestro
