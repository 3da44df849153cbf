#include "platform/macos/mac_process_info_service.h"

#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

using fakes::FakeMac;

TEST(MacProcessInfoService, ReadsTheMemorySize) {
    FakeMac mac;
    mac.kernel.values["hw.memsize"] = std::uint64_t{34'359'738'368};
    MacProcessInfoService info;

    EXPECT_EQ(info.physicalMemory(), 34'359'738'368U);
}

TEST(MacProcessInfoService, ReadsTheSystemVersion) {
    FakeMac mac;
    MacProcessInfoService info;

    mac.kernel.values["kern.osproductversion"] = std::string("14.5.1");
    const auto full = info.operatingSystemVersion();
    mac.kernel.values["kern.osproductversion"] = std::string("26.0");
    const auto shorter = info.operatingSystemVersion();

    EXPECT_EQ(full.productName, "macOS");
    EXPECT_EQ(full.major, 14);
    EXPECT_EQ(full.minor, 5);
    EXPECT_EQ(full.patch, 1);
    EXPECT_EQ(shorter.major, 26);
    EXPECT_EQ(shorter.patch, 0);
}

TEST(MacProcessInfoService, ToleratesAVersionThatIsNone) {
    FakeMac mac;
    mac.kernel.values["kern.osproductversion"] = std::string("-14.x.99999999999999999999");
    MacProcessInfoService info;

    const auto version = info.operatingSystemVersion();

    EXPECT_EQ(version.major, 0);
    EXPECT_EQ(version.minor, 0);
    EXPECT_EQ(version.patch, 0);
}

TEST(MacProcessInfoService, MapsThermalPressureToTheFourStates) {
    FakeMac mac;
    MacProcessInfoService info;

    for (const auto& [pressure, state] : {std::pair{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 3}, {99, 3}}) {
        mac.kernel.thermalPressure = static_cast<std::uint64_t>(pressure);
        EXPECT_EQ(info.thermalState(), state);
    }
}

TEST(MacProcessInfoService, HoldsNothingWhenCallsFail) {
    useWithFailingCalls([](FakeMac& mac) { mac.kernel.thermalPressure = 2; },
                        [](FakeMac& mac) {
                            MacProcessInfoService info;
                            info.physicalMemory();
                            info.operatingSystemVersion();
                            const bool works = !mac.everythingFails && !mac.failing.contains("notify_get_state") &&
                                               !mac.failing.contains("notify_register_check");
                            EXPECT_EQ(info.thermalState(), works ? 2 : 0);
                        });
}

}  // namespace
}  // namespace kestro
