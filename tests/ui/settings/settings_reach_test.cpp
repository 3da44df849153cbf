#include "tests/ui/settings/settings_view_test.h"
#include "ui/controls/scroll_area.h"
#include "ui/controls/tab_strip.h"

#include <QScrollBar>

namespace kestro {
namespace {

class SettingsReachTest : public SettingsViewFixture {
protected:
    /// Opens the cooling tab in a window too low for it and returns the scroll bar.
    QScrollBar& openLow() {
        open(SettingsTab::cooling);
        view_->resize(860, 420);
        view_->activateWindow();
        QApplication::processEvents();
        for (const ScrollArea* area : view_->findChildren<ScrollArea*>()) {
            if (area->isVisible()) {
                return *area->verticalScrollBar();
            }
        }
        throw std::runtime_error("nothing scrolls");
    }

    static bool isInSight(const QWidget& widget) { return widget.visibleRegion() == QRegion(widget.rect()); }
};

/// The widget that Tab moves to from `widget`: the next one that accepts focus by Tab.
QWidget* afterTab(QWidget* widget) {
    QWidget* next = widget->nextInFocusChain();
    while (next != widget && !(next->isVisible() && next->isEnabled() && next->focusPolicy() & Qt::TabFocus)) {
        next = next->nextInFocusChain();
    }
    return next;
}

TEST_F(SettingsReachTest, TabKeyFollowsTheReadingOrderOnEveryTab) {
    open(SettingsTab::menubar);
    for (const SettingsTab tab : allCases<SettingsTab>()) {
        settings().selectedSettingsTab.set(tab);
        QApplication::processEvents();
        const auto place = [this](const QWidget* widget) {
            return QRect(widget->mapTo(view_.get(), QPoint()), widget->size());
        };

        QWidget* widget = &button("Close");
        int stops = 1;
        for (QWidget* next = afterTab(widget); next != &button("Close"); next = afterTab(widget)) {
            const QRect from = place(widget);
            const QRect to = place(next);
            const bool goesBack = to.bottom() < from.top() && to.left() < from.right();
            const bool goesLeft = to.right() < from.left() && to.top() < from.bottom();
            EXPECT_FALSE(goesBack || goesLeft)
                << rawValue(tab) << ": from " << widget->accessibleName().toStdString() << " to "
                << next->accessibleName().toStdString();
            widget = next;
            ++stops;
        }

        // The sensors tab adds no controls.
        EXPECT_EQ(stops > 2, tab != SettingsTab::sensors) << rawValue(tab);
    }
}

TEST_F(SettingsReachTest, NamesEveryControl) {
    open(SettingsTab::menubar);
    for (const SettingsTab tab : allCases<SettingsTab>()) {
        settings().selectedSettingsTab.set(tab);

        for (const Control* control : view_->content(tab)->findChildren<Control*>()) {
            EXPECT_FALSE(control->accessibleInfo().name.isEmpty()) << rawValue(tab);
        }
    }
}

TEST_F(SettingsReachTest, ScrollsToAControlFocusedByTabFromOutside) {
    QScrollBar& bar = openLow();
    auto& strip = *view_->findChild<TabStrip*>();
    strip.setFocus(Qt::TabFocusReason);
    bar.setValue(bar.maximum());

    press(strip, Qt::Key_Tab);

    ASSERT_NE(view_->focusWidget(), &strip);
    EXPECT_TRUE(isInSight(*view_->focusWidget()));
    EXPECT_LT(bar.value(), bar.maximum());
}

TEST_F(SettingsReachTest, ScrollsToAControlFocusedByTheArrows) {
    QScrollBar& bar = openLow();
    SettingRow& chosen = row("Average SoC Temp");
    chosen.setFocus(Qt::TabFocusReason);
    bar.setValue(chosen.mapTo(view_->content(SettingsTab::cooling), QPoint()).y() + 46 - view_->height() + 90);

    press(chosen, Qt::Key_Down);

    EXPECT_EQ(view_->focusWidget(), &row("Peak Silicon Die"));
    EXPECT_TRUE(isInSight(row("Peak Silicon Die")));
}

TEST_F(SettingsReachTest, DoesNotScrollForPointerFocus) {
    QScrollBar& bar = openLow();
    view_->findChild<TabStrip*>()->setFocus(Qt::TabFocusReason);
    bar.setValue(bar.maximum());

    button("Turbo").setFocus(Qt::MouseFocusReason);

    EXPECT_EQ(bar.value(), bar.maximum());
}

}  // namespace
}  // namespace kestro
