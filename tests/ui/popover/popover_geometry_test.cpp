#include "ui/popover/popover_geometry.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using namespace popover_geometry;

TEST(CoolingBlock, HasOneLineForUpToOneFan) {
    for (const std::size_t count : {0, 1}) {
        const CoolingBlock block = coolingBlock(count);

        ASSERT_EQ(block.fans.size(), 1);
        EXPECT_EQ(block.fans[0], QRect(14, 169, 302, 16));
        EXPECT_EQ(block.peak, QRect(14, 188, 302, 14));
        EXPECT_EQ(block.profile, QRect(14, 208, 302, 22));
    }
}

TEST(CoolingBlock, HasTwoRowsForTwoFans) {
    const CoolingBlock block = coolingBlock(2);

    EXPECT_EQ(block.fans, (std::vector{QRect(14, 164, 302, 16), QRect(14, 180, 302, 16)}));
    EXPECT_EQ(block.peak, QRect(14, 196, 302, 14));
    EXPECT_EQ(block.profile, QRect(14, 212, 302, 22));
}

TEST(CoolingBlock, HasTwoColumnsUpToFourFansAndThreeBeyond) {
    EXPECT_EQ(coolingBlock(3).fans,
              (std::vector{QRect(14, 164, 144, 16), QRect(172, 164, 144, 16), QRect(14, 180, 144, 16)}));
    EXPECT_EQ(coolingBlock(4).fans[3], QRect(172, 180, 144, 16));
    EXPECT_EQ(coolingBlock(6).fans[2], QRect(222, 164, 94, 16));
    EXPECT_EQ(coolingBlock(6).fans[3], QRect(14, 180, 94, 16));
}

TEST(CoolingBlock, ShowsAtMostSixFans) {
    EXPECT_EQ(coolingBlock(9).fans.size(), 6);
}

TEST(CoolingBlock, NeverOverlapsAndStaysInsideTheInset) {
    for (std::size_t count = 0; count <= 8; ++count) {
        const CoolingBlock block = coolingBlock(count);
        std::vector<QRect> all = block.fans;
        all.push_back(block.peak);
        all.push_back(block.profile);
        for (std::size_t i = 0; i < all.size(); ++i) {
            EXPECT_TRUE(QRect(14, 162, 302, 79).contains(all[i])) << count;
            for (std::size_t j = i + 1; j < all.size(); ++j) {
                EXPECT_FALSE(all[i].intersects(all[j])) << count;
            }
        }
    }
}

}  // namespace
}  // namespace kestro
