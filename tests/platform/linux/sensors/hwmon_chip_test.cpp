#include "platform/linux/sensors/hwmon_chip.h"

#include "platform/linux/kernel/kernel_files.h"
#include "tests/platform/linux/support.h"
#include "tests/support/allocation_counter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace kestro {
namespace {

using test::TemporaryTree;

std::vector<std::string> names(const std::vector<HwmonChip>& chips) {
    std::vector<std::string> result;
    for (const auto& chip : chips) {
        result.push_back(chip.name);
    }
    return result;
}

TEST(ChipKind, FollowsTheDriversName) {
    EXPECT_EQ(chipKind("coretemp"), ChipKind::processor);
    EXPECT_EQ(chipKind("cpu0_thermal"), ChipKind::processor);
    EXPECT_EQ(chipKind("soc_thermal"), ChipKind::processor);
    EXPECT_EQ(chipKind("nct6793"), ChipKind::mainboard);
    EXPECT_EQ(chipKind("sch311x"), ChipKind::mainboard);
    EXPECT_EQ(chipKind("sch5636"), ChipKind::mainboard);
    EXPECT_EQ(chipKind("lm79"), ChipKind::mainboard);
    EXPECT_EQ(chipKind("amdgpu"), ChipKind::graphics);
    EXPECT_EQ(chipKind("nvme"), ChipKind::drive);
    EXPECT_EQ(chipKind("acpitz"), ChipKind::firmware);
    EXPECT_EQ(chipKind("thinkpad"), ChipKind::embedded);
    EXPECT_EQ(chipKind("gigabyte_wmi"), ChipKind::mainboard);
    EXPECT_EQ(chipKind("mt7921_phy0"), ChipKind::other);
    EXPECT_EQ(chipKind(""), ChipKind::other);
}

TEST(ListHwmonChips, OrdersByDeviceRegardlessOfNumbers) {
    TemporaryTree tree;
    tree.write("/sys/devices/platform/b.0/hwmon/hwmon1/name", "b\n")
        .write("/sys/devices/platform/a.0/hwmon/hwmon7/name", "a\n")
        .write("/sys/devices/pci/card/hwmon/hwmon0/name", "amdgpu\n")
        .write("/sys/class/hwmon/x", "");
    const std::filesystem::path parent(tree.root() + "/sys/class/hwmon");
    std::filesystem::create_symlink(tree.root() + "/sys/devices/platform/b.0/hwmon/hwmon1", parent / "hwmon1");
    std::filesystem::create_symlink(tree.root() + "/sys/devices/platform/a.0/hwmon/hwmon7", parent / "hwmon7");
    std::filesystem::create_symlink(tree.root() + "/sys/devices/pci/card/hwmon/hwmon0", parent / "hwmon0");

    const auto chips = listHwmonChips(tree.root());

    ASSERT_EQ(names(chips), (std::vector<std::string>{"a", "b", "amdgpu"}));
    EXPECT_TRUE(chips[0].device.ends_with("/sys/devices/platform/a.0"));
}

TEST(ListHwmonChips, FindsTheAttributesOfOldDriversOnTheParent) {
    TemporaryTree tree;
    const std::string parent = "/sys/devices/platform/applesmc.768";
    tree.write(parent + "/name", "applesmc\n")
        .write(parent + "/fan1_input", "2000\n")
        .write(parent + "/hwmon/hwmon3/uevent", "")
        .write("/sys/class/hwmon/x", "");
    std::filesystem::create_directory_symlink(tree.root() + parent, tree.root() + parent + "/hwmon/hwmon3/device");
    std::filesystem::create_directory_symlink(tree.root() + parent + "/hwmon/hwmon3",
                                              tree.root() + "/sys/class/hwmon/hwmon3");

    const auto chips = listHwmonChips(tree.root());

    ASSERT_EQ(names(chips), (std::vector<std::string>{"applesmc"}));
    EXPECT_TRUE(chips[0].device.ends_with(parent));
    EXPECT_TRUE(chips[0].parent.ends_with("/hwmon3/device"));
    EXPECT_EQ(listInputs(chips[0], "fan"), (std::vector<std::uint32_t>{1}));
}

TEST(ListHwmonChips, SkipsChipsWithoutAReadableName) {
    TemporaryTree tree;
    tree.write("/sys/class/hwmon/hwmon0/name", "\xFF\xFE")
        .write("/sys/class/hwmon/hwmon1/name", "")
        .write("/sys/class/hwmon/hwmon2/name", std::string(100000, 'x'))
        .write("/sys/class/hwmon/hwmon3/fan1_input", "900")
        .write("/sys/class/hwmon/hwmon4/name", "good\n");

    EXPECT_EQ(names(listHwmonChips(tree.root())), (std::vector<std::string>{"good"}));
    EXPECT_TRUE(listHwmonChips(tree.root() + "/none").empty());
}

TEST(ListInputs, ListsTheNumbersOfOneKindAscending) {
    TemporaryTree tree;
    for (const auto* name :
         {"fan10_input", "fan2_input", "fan2_label", "fan_input", "fanX_input", "temp1_input"}) {
        tree.write(std::string("/chip/") + name, "1");
    }
    const HwmonChip chip{.directory = tree.root() + "/chip", .device = {}, .name = {}};

    EXPECT_EQ(listInputs(chip, "fan"), (std::vector<std::uint32_t>{2, 10}));
    EXPECT_EQ(listInputs(chip, "temp"), (std::vector<std::uint32_t>{1}));
}

TEST(ListInputs, ListsTheLowestNumbersOfAChipWithHundreds) {
    TemporaryTree tree;
    for (int number = 1; number <= 300; ++number) {
        tree.write("/chip/temp" + std::to_string(number) + "_input", "1");
    }
    const HwmonChip chip{.directory = tree.root() + "/chip", .device = {}, .name = {}};

    const auto numbers = listInputs(chip, "temp");

    ASSERT_EQ(numbers.size(), 128U);
    EXPECT_EQ(numbers.front(), 1U);
    EXPECT_EQ(numbers.back(), 128U);
}

TEST(DirectoryWatch, DetectsEntriesThatAreAddedRemovedOrReplaced) {
    TemporaryTree tree;
    DirectoryWatch watch(tree.root() + "/list");

    EXPECT_TRUE(watch.hasChanged());
    EXPECT_FALSE(watch.hasChanged());
    tree.write("/list/a", "");
    EXPECT_TRUE(watch.hasChanged());
    EXPECT_FALSE(watch.hasChanged());
    tree.rename("/list/a", "/list/b");
    EXPECT_TRUE(watch.hasChanged());
    tree.write("/other", "").rename("/other", "/list/b");
    EXPECT_TRUE(watch.hasChanged());
    tree.write("/list/b", "content does not matter");
    EXPECT_FALSE(watch.hasChanged());
}

TEST(DirectoryWatch, FollowsARecreatedDirectory) {
    TemporaryTree tree;
    tree.write("/list/a", "");
    DirectoryWatch watch(tree.root() + "/list");
    watch.hasChanged();

    tree.remove("/list");
    EXPECT_TRUE(watch.hasChanged());
    EXPECT_FALSE(watch.hasChanged());
    tree.write("/list/b", "");
    EXPECT_TRUE(watch.hasChanged());
    tree.write("/list/c", "");
    EXPECT_TRUE(watch.hasChanged());
}

TEST(DirectoryWatch, AllocatesNothing) {
    TemporaryTree tree;
    tree.write("/list/a", "");
    DirectoryWatch watch(tree.root() + "/list");
    watch.hasChanged();

    const auto before = test::allocationsOfThisThread();
    const bool changed = watch.hasChanged();
    const auto after = test::allocationsOfThisThread();

    EXPECT_FALSE(changed);
    EXPECT_EQ(after, before);
}

}  // namespace
}  // namespace kestro
