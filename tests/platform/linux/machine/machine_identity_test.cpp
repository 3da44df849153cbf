#include "platform/linux/machine/machine_identity.h"

#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_view_literals;

namespace kestro {
namespace {

using test::fixture;
using test::TemporaryTree;

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
    EXPECT_EQ(parseProcessorBrand("CPU implementer : 0x51\nCPU part : 0x001\n"), "Qualcomm Oryon");
    EXPECT_EQ(parseProcessorBrand("CPU implementer : 0x41\nCPU part : 0xd85\n"), "Arm Cortex-X925");
    EXPECT_EQ(parseProcessorBrand("CPU implementer : 0x41\n"), "Arm processor");
}

TEST(ParseProcessorBrand, NamesTheCoresOfGreatestCapacity) {
    constexpr auto info =
        "processor : 0\nCPU implementer : 0x41\nCPU part : 0xd85\n\nprocessor : 1\nCPU implementer : 0x41\n"
        "CPU part : 0xd87\n\nprocessor : 2\nCPU implementer : 0x41\nCPU part : 0xd80\n";

    EXPECT_EQ(parseProcessorBrand(info, {{0, 1024}, {1, 800}, {2, 300}}), "Arm Cortex-X925");
    EXPECT_EQ(parseProcessorBrand(info, {{1, 1024}}), "Arm Cortex-A725");
    EXPECT_EQ(parseProcessorBrand(info), "Arm Cortex-A520");
}

TEST(ParseProcessorBrand, DoesNotTakeTheArchitectureForAName) {
    EXPECT_EQ(
        parseProcessorBrand("processor : 0\nmodel name : ARMv7 Processor rev 3 (v7l)\nCPU implementer : 0x41\n"
                            "CPU part : 0xd08\n"),
        "Arm Cortex-A72");
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
    EXPECT_EQ(readMachineModel(fixture("hybrid-laptop")), "ThinkPad X1 Carbon Gen 10");
    EXPECT_EQ(readMachineModel(fixture("amd-desktop")), "B550 AORUS ELITE V2");
    EXPECT_EQ(readMachineModel(fixture("pc-coretemp")), "Z170-A");
}

TEST(ReadMachineModel, FallsBackToTheArchitecture) {
    EXPECT_EQ(readMachineModel(fixture("vm")), "x86_64");
    EXPECT_FALSE(readMachineModel(fixture("no-such-machine")));
}

TEST(ReadMachineModel, NamesTheHypervisorOfAVirtualMachine) {
    TemporaryTree firmware;
    firmware.write("/sys/class/dmi/id/sys_vendor", "QEMU\n")
        .write("/sys/class/dmi/id/product_name", "Standard PC (Q35 + ICH9, 2009)\n");
    TemporaryTree deviceTree;
    TemporaryTree xen;
    xen.write("/sys/hypervisor/type", "xen\n").write("/proc/sys/kernel/arch", "x86_64\n");

    EXPECT_EQ(readMachineModel(firmware.root()), "QEMU/KVM");
    EXPECT_EQ(readMachineModel(xen.root()), "Xen");
    deviceTree.write("/proc/device-tree/model", std::string("riscv-virtio,qemu\0", 18));
    EXPECT_EQ(readMachineModel(deviceTree.root()), "QEMU/KVM");
    deviceTree.write("/proc/device-tree/model", std::string("linux,dummy-virt\0", 17));
    EXPECT_EQ(readMachineModel(deviceTree.root()), "KVM");
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

TEST(ReadProcessorBrand, WeighsTheCoresByTheirCapacities) {
    TemporaryTree tree;
    tree.write("/proc/cpuinfo",
               "processor : 0\nCPU implementer : 0x41\nCPU part : 0xd0b\n\n"
               "processor : 1\nCPU implementer : 0x41\nCPU part : 0xd05\n")
        .write("/sys/devices/system/cpu/cpu0/cpu_capacity", "1024\n")
        .write("/sys/devices/system/cpu/cpu1/cpu_capacity", "530\n");

    EXPECT_EQ(readProcessorBrand(tree.root()), "Arm Cortex-A76");
}

TEST(ReadProcessorBrand, ReadsOnlyTheBeginningOfALongFile) {
    TemporaryTree tree;
    tree.write("/proc/cpuinfo", "model name : First\n" + std::string(10'000'000, 'x'));

    EXPECT_EQ(readProcessorBrand(tree.root()), "First");
}

}  // namespace
}  // namespace kestro
