#include "tests/desktop/shell_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kestro {
namespace {

/// Opens the popover by a click on the item, clicks elsewhere on the status bar, and waits until the popover has
/// gone. Only a menu that has survived that receives the following keys.
class MenuFixture : public ShellFixture {
protected:
    using ShellFixture::ShellFixture;

    void clickWhileThePopoverIsOpen(QPoint item, QPoint place, int button) {
        session.click(item);
        ASSERT_TRUE(session.waitFor([&] { return isPopoverVisible(); }));
        session.click(place, button);
        awaitTheMenuAlone();
    }

    void clickWithControlWhileThePopoverIsOpen(QPoint item) {
        session.click(item);
        ASSERT_TRUE(session.waitFor([&] { return isPopoverVisible(); }));
        session.output(QStringLiteral("xdotool"), {QStringLiteral("keydown"), QStringLiteral("ctrl")});
        session.click(item);
        session.output(QStringLiteral("xdotool"), {QStringLiteral("keyup"), QStringLiteral("ctrl")});
        awaitTheMenuAlone();
    }

    void awaitTheMenuAlone() {
        ASSERT_TRUE(session.waitFor([&] { return isMenuVisible() && !isPopoverVisible(); }))
            << "menu: " << isMenuVisible() << ", popover: " << isPopoverVisible();
    }

    /// A menu is a window of the same name.
    bool isPopoverVisible() const {
        return isVisible([](int width) { return width == popoverWidth; });
    }
    bool isMenuVisible() const {
        return isVisible([](int width) { return width != popoverWidth; });
    }

    template <typename IsExpected>
    bool isVisible(IsExpected isExpectedWidth) const {
        const std::vector<DesktopWindow> windows = session.windows();
        return std::ranges::any_of(windows, [&](const DesktopWindow& window) {
            return window.title == popover && isExpectedWidth(window.frame.width());
        });
    }

    void chooseTheLastEntry() const {
        session.key(QStringLiteral("Up"));
        session.key(QStringLiteral("Return"));
    }

    static constexpr int popoverWidth = 330;
};

struct MenuOfTheStrip : MenuFixture {
    QPoint item() const { return {session.strip()->frame.right() - 40, session.strip()->frame.center().y()}; }
    QPoint cup() const { return {session.strip()->frame.left() + 14, session.strip()->frame.center().y()}; }
};

TEST_F(MenuOfTheStrip, StaysOpenWhileThePopoverCloses) {
    launch();

    clickWhileThePopoverIsOpen(item(), item(), 3);
    chooseTheLastEntry();

    EXPECT_TRUE(ends());
}

TEST_F(MenuOfTheStrip, StaysOpenOnEitherClickOnTheCupWhileThePopoverCloses) {
    launch();
    for (const int button : {1, 3}) {
        clickWhileThePopoverIsOpen(item(), cup(), button);
        chooseTheLastEntry();

        EXPECT_TRUE(appears(settings)) << button;
        session.key(QStringLiteral("ctrl+w"));
        EXPECT_TRUE(disappears(settings)) << button;
    }
}

TEST_F(MenuOfTheStrip, StaysOpenOnAControlClickWhileThePopoverCloses) {
    launch();

    clickWithControlWhileThePopoverIsOpen(item());
    chooseTheLastEntry();

    EXPECT_TRUE(ends());
}

struct MenuOnMate : MenuFixture {
    MenuOnMate() : MenuFixture(DesktopPanel::mate) {}

    const QPoint item{1060, 12};
};

TEST_F(MenuOnMate, StaysOpenOnAMiddleClickWhileThePopoverCloses) {
    launchWithItemAt(item);

    clickWhileThePopoverIsOpen(item, item, 2);
    chooseTheLastEntry();

    EXPECT_TRUE(ends());
}

TEST_F(MenuOnMate, StaysOpenOnAControlClickWhileThePopoverCloses) {
    launchWithItemAt(item);

    clickWithControlWhileThePopoverIsOpen(item);
    chooseTheLastEntry();

    EXPECT_TRUE(ends());
}

}  // namespace
}  // namespace kestro
