#include "ui/paint/tooltip.h"

#include "tests/ui/controls/view_test.h"
#include "ui/controls/view.h"

#include <QEnterEvent>

#include <memory>

namespace kestro {
namespace {

TEST(TooltipPlacementTest, StaysOnTheScreen) {
    const QRect screen(0, 0, 1000, 600);

    EXPECT_EQ(Tooltip::placed({100, 22}, {500, 300}, screen), QRect(500, 318, 100, 22));
    EXPECT_EQ(Tooltip::placed({100, 22}, {980, 300}, screen).right(), 999);
    EXPECT_LT(Tooltip::placed({100, 22}, {500, 595}, screen).bottom(), 595);
    EXPECT_EQ(Tooltip::placed({2000, 22}, {500, 300}, screen).left(), 0);
}

/// Fixture with a view for the pointer to enter; the test ends the delay itself.
class TooltipTest : public ViewTest {
protected:
    TooltipTest() {
        view_->setGeometry(200, 200, 120, 30);
        view_->setHelp(QStringLiteral("/usr/bin/first"));
        view_->show();
        QApplication::processEvents();
    }

    ~TooltipTest() override { leave(*view_); }

    static void enter(QWidget& view) {
        view.setAttribute(Qt::WA_UnderMouse);
        QEnterEvent event(QPointF(5, 5), QPointF(5, 5), view.mapToGlobal(QPointF(5, 5)));
        QApplication::sendEvent(&view, &event);
    }

    static void leave(QWidget& view) {
        view.setAttribute(Qt::WA_UnderMouse, false);
        QEvent event(QEvent::Leave);
        QApplication::sendEvent(&view, &event);
    }

    void rest() {
        enter(*view_);
        Tooltip::current()->endWait();
    }

    static bool isShown() { return Tooltip::current() && Tooltip::current()->isVisible(); }
    static bool isWaiting() { return Tooltip::current() && Tooltip::current()->isWaiting(); }

    std::unique_ptr<View> view_ = std::make_unique<View>();
};

TEST_F(TooltipTest, AppearsOnlyAfterItsDelay) {
    enter(*view_);
    EXPECT_EQ(Tooltip::delayMilliseconds, 500);
    EXPECT_TRUE(isWaiting());
    EXPECT_FALSE(isShown());

    Tooltip::current()->endWait();

    EXPECT_TRUE(isShown());
    EXPECT_EQ(Tooltip::current()->lines(), QStringList{QStringLiteral("/usr/bin/first")});
}

TEST_F(TooltipTest, DoesNotAppearIfThePointerLeavesFirst) {
    enter(*view_);
    leave(*view_);
    EXPECT_FALSE(isWaiting());

    Tooltip::current()->endWait();

    EXPECT_FALSE(isShown());
}

TEST_F(TooltipTest, HidesOnLeavePressKeyAndHiddenView) {
    rest();
    leave(*view_);
    EXPECT_FALSE(isShown());

    rest();
    send(*view_, QEvent::MouseButtonPress, {5, 5}, Qt::LeftButton);
    EXPECT_FALSE(isShown());

    rest();
    press(*view_, Qt::Key_A);
    EXPECT_FALSE(isShown());

    rest();
    ASSERT_TRUE(isShown());
    view_->hide();
    EXPECT_FALSE(isShown());
}

TEST_F(TooltipTest, UpdatesWhenTheHelpChangesWhileShown) {
    rest();
    const int before = Tooltip::current()->width();
    const QPoint place = Tooltip::current()->pos();

    view_->setHelp(QStringLiteral("/usr/lib/another/program/with/a/longer/path"));

    EXPECT_TRUE(isShown());
    EXPECT_EQ(Tooltip::current()->lines(),
              QStringList{QStringLiteral("/usr/lib/another/program/with/a/longer/path")});
    EXPECT_GT(Tooltip::current()->width(), before);
    EXPECT_EQ(Tooltip::current()->pos().y(), place.y());
}

TEST_F(TooltipTest, ShowsTheLatestHelpWhenTheDelayEnds) {
    enter(*view_);
    view_->setHelp(QStringLiteral("/usr/bin/second"));
    EXPECT_TRUE(isWaiting());
    EXPECT_FALSE(isShown());

    Tooltip::current()->endWait();

    EXPECT_EQ(Tooltip::current()->lines(), QStringList{QStringLiteral("/usr/bin/second")});
}

TEST_F(TooltipTest, HidesWhenTheHelpBecomesEmpty) {
    rest();
    view_->setHelp(QString());
    EXPECT_FALSE(isShown());

    view_->setHelp(QStringLiteral("/usr/bin/first"));
    enter(*view_);
    view_->setHelp(QString());

    EXPECT_FALSE(isWaiting());
}

TEST_F(TooltipTest, IgnoresHelpChangesOfOtherViews) {
    View other;
    rest();

    other.setHelp(QStringLiteral("Settings"));
    other.setHelp(QString());

    EXPECT_TRUE(isShown());
    EXPECT_EQ(Tooltip::current()->lines(), QStringList{QStringLiteral("/usr/bin/first")});
}

TEST_F(TooltipTest, IsFlatAndTheDarkestGlass) {
    Tooltip tooltip(QStringLiteral("i"));
    tooltip.resize(60, 80);

    const QImage image = picture(tooltip);

    const QColor ground = KestroTheme::ground();
    for (const int y : {10, 40, 70}) {
        const QColor pixel = image.pixelColor(50, y);
        EXPECT_EQ(pixel.alpha(), 255);
        EXPECT_NEAR(pixel.redF(), ground.redF() * 0.58, 0.006);
        EXPECT_NEAR(pixel.greenF(), ground.greenF() * 0.58, 0.006);
        EXPECT_NEAR(pixel.blueF(), ground.blueF() * 0.58, 0.006);
    }
}

TEST_F(TooltipTest, ShowsPlainTextInAtMostEightLines) {
    const QStringList lines = Tooltip::wrapped(QString(5000, QLatin1Char('x')), 60);

    EXPECT_EQ(lines.size(), Tooltip::mostLines);
    EXPECT_TRUE(lines.last().endsWith(QChar(0x2026)));
    EXPECT_EQ(Tooltip::wrapped(QStringLiteral("<b>Settings</b> &x"), 400),
              QStringList{QStringLiteral("<b>Settings</b> &x")});
}

TEST_F(TooltipTest, FitsItsText) {
    const Tooltip tooltip(QStringLiteral("Settings"));

    EXPECT_EQ(tooltip.height(), 14 + 2 * 4);
    EXPECT_GT(tooltip.width(), 16);
}

}  // namespace
}  // namespace kestro
