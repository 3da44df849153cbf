#include "tests/ui/settings/settings_view_test.h"

namespace kestro {
namespace {

using SettingsReachTest = SettingsViewFixture;

/// Where Tab goes from `widget`: the next that takes the focus by it.
QWidget* afterTab(QWidget* widget) {
    QWidget* next = widget->nextInFocusChain();
    while (next != widget && !(next->isVisible() && next->isEnabled() && next->focusPolicy() & Qt::TabFocus)) {
        next = next->nextInFocusChain();
    }
    return next;
}

TEST_F(SettingsReachTest, GoesThroughEveryTabInReadingOrder) {
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

        // The sensors have nothing to set.
        EXPECT_EQ(stops > 2, tab != SettingsTab::sensors) << rawValue(tab);
    }
}

TEST_F(SettingsReachTest, NamesWhatCanBeReached) {
    open(SettingsTab::menubar);
    for (const SettingsTab tab : allCases<SettingsTab>()) {
        settings().selectedSettingsTab.set(tab);

        for (const Control* control : view_->content(tab)->findChildren<Control*>()) {
            EXPECT_FALSE(control->accessibleInfo().name.isEmpty()) << rawValue(tab);
        }
    }
}

}  // namespace
}  // namespace kestro
