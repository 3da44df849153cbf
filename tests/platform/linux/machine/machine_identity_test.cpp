#include "platform/linux/machine/machine_identity.h"

#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_view_literals;

namespace kestro {
namespace {

using test::fixture;
using test::TemporaryTree;

TEST(IsFirmwareFiller, RecognisesManufacturersPlaceholders) {
    EXPECT_TRUE(isFirmwareFiller("To Be Filled By O.E.M."));
    EXPECT_TRUE(isFirmwareFiller(" System Product Name "));
    EXPECT_TRUE(isFirmwareFiller("Default string"));
    EXPECT_TRUE(isFirmwareFiller("0000000"));
    EXPECT_TRUE(isFirmwareFiller(""));
    EXPECT_FALSE(isFirmwareFiller("21CBCTO1WW"));
    EXPECT_FALSE(isFirmwareFiller("B550 AORUS ELITE V2"));
}

TEST(ParseProcessorBrand, ReadsTheModelName) {
    EXPECT_EQ(parseProcessorBrand("processor\t: 0\nmodel\t\t: 94\nmodel name\t: AMD EPYC   7763 \n"),
              "AMD EPYC 7763");
}

TEST(ParseProcessorBrand, ReadsTheEquivalentsOnOtherArchitectures) {
    EXPECT_EQ(parseProcessorBrand("processor : 0\ncpu : POWER9, altivec supported\n"),
              "POWER9, altivec supported");
    EXPECT_EQ(parseProcessorBrand("processor : 0\nuarch : sifive,u74-mc\n"), "sifive,u74-mc");
    EXPECT_EQ(parseProcessorBrand("CPU implementer : 0x41\nCPU part : 0xd08\nHardware : BCM2835\n"), "BCM2835");
}

TEST(ParseProcessorBrand, TranslatesArmNumbersIntoNames) {
    EXPECT_EQ(parseProcessorBrand("CPU implementer\t: 0x41\nCPU part\t: 0xd05\n\nCPU implementer\t: 0x41\n"
                                  "CPU part\t: 0xd0b\n"),
              "Arm Cortex-A76");
    EXPECT_EQ(parseProcessorBrand("CPU implementer : 0x51\nCPU part : 0x001\n"), "Qualcomm processor");
    EXPECT_EQ(parseProcessorBrand("CPU implementer : 0x41\n"), "Arm processor");
}

TEST(ParseProcessorBrand, IsAbsentWithoutAnyName) {
    EXPECT_FALSE(parseProcessorBrand(""));
    EXPECT_FALSE(parseProcessorBrand("model name\t:\n"));
    EXPECT_FALSE(parseProcessorBrand("model name\t: \xFF\xFE\n"));
    EXPECT_FALSE(parseProcessorBrand("CPU implementer : 0xff\n"));
    EXPECT_FALSE(parseProcessorBrand("CPU implementer : 41\n"));
    EXPECT_FALSE(parseProcessorBrand(std::string(100000, ':')));
}

TEST(AppleChipName, ReadsTheDeviceTreeList) {
    EXPECT_EQ(appleChipName("apple,j314s\0apple,t6000\0apple,arm-platform\0"sv), "Apple M1 Pro");
    EXPECT_FALSE(appleChipName("raspberrypi,5-model-b\0brcm,bcm2712\0"sv));
    EXPECT_FALSE(appleChipName(""));
}

TEST(ReadMachineModel, PrefersTheDeviceTreeThenTheProductThenTheMainboard) {
    EXPECT_EQ(readMachineModel(fixture("apple-laptop")), "Apple MacBook Pro (14-inch, M1 Pro, 2021)");
    EXPECT_EQ(readMachineModel(fixture("hybrid-laptop")), "21CBCTO1WW");
    EXPECT_EQ(readMachineModel(fixture("amd-desktop")), "B550 AORUS ELITE V2");
    EXPECT_EQ(readMachineModel(fixture("pc-coretemp")), "Z170-A");
}

TEST(ReadMachineModel, FallsBackToTheArchitecture) {
    EXPECT_EQ(readMachineModel(fixture("vm")), "x86_64");
    EXPECT_FALSE(readMachineModel(fixture("no-such-machine")));
}

TEST(ReadMachineModel, SkipsTextUnsuitableForDisplay) {
    TemporaryTree tree;
    tree.write("/proc/device-tree/model", "\xFF\xFE")
        .write("/sys/class/dmi/id/product_name", std::string(100000, 'x'))
        .write("/sys/class/dmi/id/board_name", "X570\n");

    EXPECT_EQ(readMachineModel(tree.root()), "X570");
}

TEST(ReadProcessorBrand, NamesTheProcessorOfEveryMachine) {
    EXPECT_EQ(readProcessorBrand(fixture("apple-laptop")), "Apple M1 Pro");
    EXPECT_EQ(readProcessorBrand(fixture("hybrid-laptop")), "12th Gen Intel(R) Core(TM) i7-12700H");
    EXPECT_EQ(readProcessorBrand(fixture("amd-desktop")), "AMD Ryzen 7 5800X 8-Core Processor");
    EXPECT_FALSE(readProcessorBrand(fixture("no-such-machine")));
}

TEST(ReadProcessorBrand, ReadsOnlyTheBeginningOfALongFile) {
    TemporaryTree tree;
    tree.write("/proc/cpuinfo", "model name : First\n" + std::string(10'000'000, 'x'));

    EXPECT_EQ(readProcessorBrand(tree.root()), "First");
}

}  // namespace
}  // namespace kestro
