#include "platform/macos/mac_system_control.h"

#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>
#include <sys/sysctl.h>

#include <cstring>
#include <string>
#include <vector>

namespace kestro {
namespace {

using fakes::FakeMac;

std::vector<std::uint8_t> swapRecord(std::uint64_t total, std::uint64_t used) {
    const xsw_usage usage{total, total - used, used, 16384, 1};
    std::vector<std::uint8_t> bytes(sizeof usage);
    std::memcpy(bytes.data(), &usage, sizeof usage);
    return bytes;
}

TEST(MacSystemControl, ReadsIntegersAndText) {
    FakeMac mac;
    mac.kernel.values["hw.perflevel0.physicalcpu"] = std::int32_t{8};
    mac.kernel.values["hw.perflevel0.name"] = std::string("Performance");
    MacSystemControl system;

    EXPECT_EQ(system.sysctlByNameInt32("hw.perflevel0.physicalcpu"), 8);
    EXPECT_EQ(system.sysctlByNameText("hw.perflevel0.name"), "Performance");
}

TEST(MacSystemControl, HasNoValueForAnUnknownName) {
    FakeMac mac;
    MacSystemControl system;

    EXPECT_FALSE(system.sysctlByNameInt32("hw.perflevel1.physicalcpu"));
    EXPECT_FALSE(system.sysctlByNameText("hw.perflevel1.name"));
    EXPECT_FALSE(system.swapUsage());
    EXPECT_FALSE(system.bootTime());
}

TEST(MacSystemControl, RejectsIntegersOfAnotherSize) {
    FakeMac mac;
    mac.kernel.values["long"] = std::uint64_t{8};
    mac.kernel.values["short"] = std::vector<std::uint8_t>{8, 0};
    MacSystemControl system;

    EXPECT_FALSE(system.sysctlByNameInt32("long"));
    EXPECT_FALSE(system.sysctlByNameInt32("short"));
}

TEST(MacSystemControl, CutsTextAtTheFirstZero) {
    FakeMac mac;
    mac.kernel.values["padded"] = std::string("Mac14,9\0\0\0junk", 14);
    mac.kernel.values["unterminated"] = std::vector<std::uint8_t>{'a', 'b'};
    mac.kernel.values["empty"] = std::vector<std::uint8_t>{};
    MacSystemControl system;

    EXPECT_EQ(system.sysctlByNameText("padded"), "Mac14,9");
    EXPECT_EQ(system.sysctlByNameText("unterminated"), "ab");
    EXPECT_EQ(system.sysctlByNameText("empty"), "");
}

TEST(MacSystemControl, ReadsTheSwapRecord) {
    FakeMac mac;
    mac.kernel.values["vm.swapusage"] = swapRecord(2'147'483'648, 644'245'094);
    MacSystemControl system;

    const auto usage = system.swapUsage();

    ASSERT_TRUE(usage);
    EXPECT_EQ(usage->total, 2'147'483'648U);
    EXPECT_EQ(usage->used, 644'245'094U);
}

TEST(MacSystemControl, ReadsTheBootTime) {
    FakeMac mac;
    mac.kernel.bootTime = {1'749'532'020, 250'000};
    MacSystemControl system;

    const auto time = system.bootTime();

    ASSERT_TRUE(time);
    EXPECT_EQ(time->seconds, 1'749'532'020);
    EXPECT_EQ(time->microseconds, 250'000);
}

TEST(MacSystemControl, HoldsNothingWhenCallsFail) {
    useWithFailingCalls(
        [](FakeMac& mac) {
            mac.kernel.values["hw.model"] = std::string("Mac14,9");
            mac.kernel.values["vm.swapusage"] = swapRecord(1, 1);
            mac.kernel.bootTime = {1, 0};
        },
        [](FakeMac& mac) {
            MacSystemControl system;
            const bool fails = mac.everythingFails || mac.failing.contains("sysctlbyname");
            EXPECT_EQ(system.sysctlByNameText("hw.model").has_value(), !fails);
            EXPECT_EQ(system.swapUsage().has_value(), !fails);
            system.bootTime();
        });
}

}  // namespace
}  // namespace kestro
