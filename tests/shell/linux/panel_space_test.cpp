#include "shell/linux/panel_space.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestro {
namespace {

constexpr QSize desktop(3200, 1080);
const QRect left(0, 0, 1920, 1080);
const QRect right(1920, 0, 1280, 800);

PanelStrut atTheTop(std::uint32_t thickness, std::uint32_t first, std::uint32_t last) {
    return {0, 0, thickness, 0, 0, 0, 0, 0, first, last, 0, 0};
}

TEST(PanelSpace, IsCutFromTheScreenOfThePanelOnly) {
    const std::vector<PanelStrut> struts{atTheTop(28, 1920, 3199)};

    EXPECT_EQ(clearOfStruts(right, desktop, struts), QRect(1920, 28, 1280, 772));
    EXPECT_EQ(clearOfStruts(left, desktop, struts), left);
}

TEST(PanelSpace, IsCutAtEveryEdge) {
    const std::vector<PanelStrut> struts{{40, 0, 0, 0, 0, 1079, 0, 0, 0, 0, 0, 0},
                                         {0, 0, 0, 30, 0, 0, 0, 0, 0, 0, 0, 1919},
                                         {0, 50, 0, 0, 0, 0, 0, 799, 0, 0, 0, 0}};

    EXPECT_EQ(clearOfStruts(left, desktop, struts), QRect(40, 0, 1880, 1050));
    EXPECT_EQ(clearOfStruts(right, desktop, struts), QRect(1920, 0, 1230, 800));
}

TEST(PanelSpace, CountsFromTheEdgeOfTheWholeDesktop) {
    // At the bottom of the lower screen, 280 pixels above the bottom of the desktop.
    const std::vector<PanelStrut> struts{{0, 0, 0, 310, 0, 0, 0, 0, 0, 0, 1920, 3199}};

    EXPECT_EQ(clearOfStruts(right, desktop, struts), QRect(1920, 0, 1280, 770));
}

TEST(PanelSpace, IsThatOfTheThickestPanelAtAnEdge) {
    EXPECT_EQ(clearOfStruts(left, desktop, {atTheTop(28, 0, 900), atTheTop(60, 901, 1919), atTheTop(10, 0, 1919)}),
              QRect(0, 60, 1920, 1020));
}

TEST(PanelSpace, LeavesAtLeastHalfOfAScreen) {
    // A panel at the left edge of the right screen reserves all of the left one.
    const PanelStrut between{1960, 0, 0, 0, 0, 1079, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(clearOfStruts(left, desktop, {between}), left);
    EXPECT_EQ(clearOfStruts(right, desktop, {between}), QRect(1960, 0, 1240, 800));

    constexpr std::uint32_t huge = std::numeric_limits<std::uint32_t>::max();
    const PanelStrut nonsense{huge, huge, huge, huge, 0, huge, 0, huge, 0, huge, 0, huge};
    EXPECT_EQ(clearOfStruts(left, desktop, {nonsense}), left);
    EXPECT_EQ(clearOfStruts(left, desktop, {atTheTop(540, 0, 1919), {0, 0, 0, 540, 0, 0, 0, 0, 0, 0, 0, 1919}}),
              QRect(0, 540, 1920, 540));
}

TEST(PanelSpace, IsTheLargestPublishedAreaOfTheScreen) {
    const std::vector<QRect> areas{{0, 28, 1920, 1052}, {1920, 0, 1280, 800}};

    EXPECT_EQ(largestPart(left, areas), areas[0]);
    EXPECT_EQ(largestPart(right, areas), areas[1]);
    EXPECT_EQ(largestPart(right, {areas[0], {1920, 0, 100, 800}}), std::nullopt);
    EXPECT_EQ(largestPart(left, {}), std::nullopt);
}

}  // namespace
}  // namespace kestro
