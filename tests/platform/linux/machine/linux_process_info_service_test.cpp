#include "platform/linux/machine/linux_process_info_service.h"

#include "platform/linux/machine/linux_clock.h"
#include "tests/platform/linux/support.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

using test::fixture;
using test::ManualClock;
using test::TemporaryTree;
using namespace std::chrono_literals;

OperatingSystemVersion versionOf(const std::string& root) {
    ManualClock clock;
    return LinuxProcessInfoService(clock, root).operatingSystemVersion();
}

TEST(LinuxProcessInfoService, UsesTheKernelsTotalAsPhysicalMemory) {
    ManualClock clock;

    EXPECT_EQ(LinuxProcessInfoService(clock, fixture("pc-coretemp")).physicalMemory(),
              16308432U * std::uint64_t{1024});
    EXPECT_EQ(LinuxProcessInfoService(clock, fixture("container")).physicalMemory(),
              2097152U * std::uint64_t{1024});
    EXPECT_EQ(LinuxProcessInfoService(clock, fixture("no-such-machine")).physicalMemory(), 0U);
}

TEST(LinuxProcessInfoService, NamesTheDistributionAndItsVersion) {
    const auto ubuntu = versionOf(fixture("hybrid-laptop"));
    const auto alpine = versionOf(fixture("container"));

    EXPECT_EQ(ubuntu.productName, "Ubuntu");
    EXPECT_EQ(ubuntu.major, 24);
    EXPECT_EQ(ubuntu.minor, 4);
    EXPECT_EQ(ubuntu.patch, 0);
    EXPECT_EQ(alpine.productName, "Alpine Linux");
    EXPECT_EQ(alpine.patch, 1);
}

TEST(LinuxProcessInfoService, UsesTheKernelsVersionForARollingDistribution) {
    const auto arch = versionOf(fixture("amd-desktop"));

    EXPECT_EQ(arch.productName, "Arch Linux");
    EXPECT_EQ(arch.major, 6);
    EXPECT_EQ(arch.minor, 9);
    EXPECT_EQ(arch.patch, 3);
}

TEST(LinuxProcessInfoService, AlsoReadsTheVendorsFile) {
    TemporaryTree tree;
    tree.write("/usr/lib/os-release", "NAME=Vendor\nVERSION_ID=2\n");

    EXPECT_EQ(versionOf(tree.root()).productName, "Vendor");
}

TEST(LinuxProcessInfoService, FallsBackToLinuxAsTheName) {
    TemporaryTree tree;
    tree.write("/etc/os-release", std::string(100000, 'x'));

    for (const auto& root : {tree.root(), fixture("no-such-machine")}) {
        const auto version = versionOf(root);
        EXPECT_EQ(version.productName, "Linux");
        EXPECT_EQ(version.major, 0);
    }
}

TEST(LinuxProcessInfoService, DerivesTheThermalStateFromTheWorstZone) {
    ManualClock clock;
    TemporaryTree tree;
    tree.copyFrom("hybrid-laptop");
    LinuxProcessInfoService service(clock, tree.root());

    EXPECT_EQ(service.thermalState(), 0);
    tree.write("/sys/class/thermal/thermal_zone2/temp", "95000\n");
    clock.advance(2s);
    EXPECT_EQ(service.thermalState(), 1);
    tree.write("/sys/class/thermal/thermal_zone0/temp", "128000\n");
    clock.advance(2s);
    EXPECT_EQ(service.thermalState(), 3);
}

TEST(LinuxProcessInfoService, ReadsTheZonesAtMostEveryOtherSecond) {
    ManualClock clock;
    TemporaryTree tree;
    tree.copyFrom("hybrid-laptop");
    LinuxProcessInfoService service(clock, tree.root());
    ASSERT_EQ(service.thermalState(), 0);

    tree.write("/sys/class/thermal/thermal_zone2/temp", "95000\n");
    clock.advance(1s);

    EXPECT_EQ(service.thermalState(), 0);
}

TEST(LinuxProcessInfoService, IgnoresThresholdsSetByPrograms) {
    ManualClock clock;

    EXPECT_EQ(LinuxProcessInfoService(clock, fixture("pc-coretemp")).thermalState(), 0);
}

TEST(LinuxProcessInfoService, IsNominalWithoutZonesOrReadings) {
    ManualClock clock;
    TemporaryTree tree;
    tree.write("/sys/class/thermal/thermal_zone0/type", "acpitz\n")
        .write("/sys/class/thermal/thermal_zone0/trip_point_0_type", "critical\n")
        .write("/sys/class/thermal/thermal_zone0/trip_point_0_temp", "90000\n")
        .write("/sys/class/thermal/thermal_zone0/temp", "N/A\n");

    EXPECT_EQ(LinuxProcessInfoService(clock, fixture("vm")).thermalState(), 0);
    EXPECT_EQ(LinuxProcessInfoService(clock, tree.root()).thermalState(), 0);
}

TEST(LinuxClock, CountsFromBootIncludingTimeAsleep) {
    const LinuxClock clock;

    const auto awake = clock.monotonicNow().time_since_epoch();
    const auto sinceBoot = clock.sinceBoot();

    ASSERT_TRUE(sinceBoot);
    EXPECT_GE(*sinceBoot, awake);
}

TEST(LinuxClock, NeverGoesBackwards) {
    const LinuxClock clock;

    const auto first = clock.monotonicNow();
    const auto second = clock.monotonicNow();

    EXPECT_LE(first, second);
    EXPECT_GT(clock.wallNow().time_since_epoch(), std::chrono::hours{24 * 365 * 50});
}

}  // namespace
}  // namespace kestro
