#include "core/model/menubar_modules.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

constexpr auto icon = MenubarModuleType::appIcon;
constexpr auto memory = MenubarModuleType::memory;
constexpr auto fans = MenubarModuleType::fanSpeed;
constexpr auto disk = MenubarModuleType::diskSpace;

TEST(MenubarModules, ToggleAppendsAModuleThatIsNotListed) {
    EXPECT_EQ(toggleModule({icon, memory}, disk), (MenubarModules{icon, memory, disk}));
    EXPECT_EQ(toggleModule({}, disk), MenubarModules{disk});
}

TEST(MenubarModules, ToggleRemovesAListedModule) {
    EXPECT_EQ(toggleModule({icon, memory, fans}, memory), (MenubarModules{icon, fans}));
    EXPECT_EQ(toggleModule({icon, memory}, icon), MenubarModules{memory});
}

TEST(MenubarModules, ToggleNeverRemovesTheLastModule) {
    EXPECT_EQ(toggleModule({memory}, memory), MenubarModules{memory});
}

TEST(MenubarModules, ToggleRemovesDuplicatesButLeavesOneModule) {
    EXPECT_EQ(toggleModule({memory, fans, memory}, memory), MenubarModules{fans});
    EXPECT_EQ(toggleModule({memory, memory}, memory), MenubarModules{memory});
}

TEST(MenubarModules, MoveUpSwapsWithThePredecessor) {
    EXPECT_EQ(moveModuleUp({icon, memory, fans}, fans), (MenubarModules{icon, fans, memory}));
}

TEST(MenubarModules, MoveUpIgnoresTheFirstAndTheUnlisted) {
    EXPECT_EQ(moveModuleUp({icon, memory}, icon), (MenubarModules{icon, memory}));
    EXPECT_EQ(moveModuleUp({icon, memory}, disk), (MenubarModules{icon, memory}));
    EXPECT_EQ(moveModuleUp({}, disk), MenubarModules{});
}

TEST(MenubarModules, MoveDownSwapsWithTheSuccessor) {
    EXPECT_EQ(moveModuleDown({icon, memory, fans}, icon), (MenubarModules{memory, icon, fans}));
}

TEST(MenubarModules, MoveDownIgnoresTheLastAndTheUnlisted) {
    EXPECT_EQ(moveModuleDown({icon, memory}, memory), (MenubarModules{icon, memory}));
    EXPECT_EQ(moveModuleDown({icon, memory}, disk), (MenubarModules{icon, memory}));
    EXPECT_EQ(moveModuleDown({}, disk), MenubarModules{});
}

TEST(MenubarModules, MoveSkipsDuplicatesOfAModule) {
    EXPECT_EQ(moveModuleDown({memory, memory, disk}, memory), (MenubarModules{disk, memory}));
    EXPECT_EQ(moveModuleUp({disk, memory, memory}, memory), (MenubarModules{memory, disk}));
    EXPECT_EQ(moveModuleDown({memory, disk, memory, fans}, memory), (MenubarModules{disk, memory, fans}));
}

TEST(MenubarModules, PlaceMovesAModuleToThePositionOfAnother) {
    EXPECT_EQ(placeModule({icon, memory, fans, disk}, icon, fans), (MenubarModules{memory, fans, icon, disk}));
    EXPECT_EQ(placeModule({icon, memory, fans, disk}, disk, memory), (MenubarModules{icon, disk, memory, fans}));
}

TEST(MenubarModules, PlaceInsertsAModuleThatIsNotListed) {
    EXPECT_EQ(placeModule({icon, memory}, disk, icon), (MenubarModules{disk, icon, memory}));
}

TEST(MenubarModules, PlaceRequiresAnotherListedModule) {
    EXPECT_EQ(placeModule({icon, memory}, memory, memory), (MenubarModules{icon, memory}));
    EXPECT_EQ(placeModule({icon, memory}, memory, disk), (MenubarModules{icon, memory}));
    EXPECT_EQ(placeModule({}, memory, disk), MenubarModules{});
}

TEST(MenubarModules, PlaceMergesDuplicates) {
    EXPECT_EQ(placeModule({memory, memory, icon}, memory, icon), (MenubarModules{icon, memory}));
}

}  // namespace
}  // namespace kestro
