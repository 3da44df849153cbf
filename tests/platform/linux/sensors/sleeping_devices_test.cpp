#include "platform/linux/sensors/sleeping_devices.h"

#include "tests/platform/linux/support.h"
#include "tests/support/allocation_counter.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using Access = SleepingDevice::Access;

/// A device with a power folder.
class Device {
public:
    Device(const char* control, const char* status, const char* delay) {
        set("control", control);
        set("runtime_status", status);
        set("autosuspend_delay_ms", delay);
    }

    void set(const std::string& attribute, const std::string& value) {
        tree_.write("/device/power/" + attribute, value + "\n");
    }

    HwmonChip chip(const char* name) const { return {{}, {}, name, chipKind(name), tree_.root() + "/device"}; }
    std::string power() const { return tree_.root() + "/device/power"; }

private:
    test::TemporaryTree tree_;
};

constexpr MonotonicTime start{1h};

TEST(SleepingDevice, IsReadOncePerTwiceItsDelay) {
    const Device files("auto", "active", "5000");
    SleepingDevice device(files.power());

    EXPECT_EQ(device.access(start), Access::read);
    EXPECT_EQ(device.access(start + 100ms), Access::read) << "the other inputs of one sample";
    EXPECT_EQ(device.access(start + 500ms), Access::wait);
    EXPECT_EQ(device.access(start + 9999ms), Access::wait);
    EXPECT_EQ(device.access(start + 10s), Access::read);
    EXPECT_EQ(device.access(start + 11s), Access::wait);
}

TEST(SleepingDevice, IsNotWokenUp) {
    Device files("auto", "suspended", "5000");
    SleepingDevice device(files.power());
    EXPECT_EQ(device.access(start), Access::asleep);

    files.set("runtime_status", "suspending");
    EXPECT_EQ(device.access(start), Access::asleep);
    files.set("runtime_status", "active");
    EXPECT_EQ(device.access(start), Access::read);
}

TEST(SleepingDevice, NeedsNoPauseIfItStaysAwakeOrHasNoDelay) {
    for (const auto& [control, delay] : {std::pair("on", "5000"), std::pair("auto", "-1"), std::pair("auto", "0"),
                                         std::pair("auto", ""), std::pair("auto", "soon")}) {
        const Device files(control, "active", delay);
        SleepingDevice device(files.power());

        EXPECT_EQ(device.access(start), Access::read);
        EXPECT_EQ(device.access(start + 1s), Access::read) << control << " " << delay;
    }
}

TEST(SleepingDevice, PausesWithoutAStatedPolicy) {
    const Device files("", "active", "5000");
    SleepingDevice device(files.power());
    device.access(start);

    EXPECT_EQ(device.access(start + 9s), Access::wait);
}

TEST(SleepingDevice, FollowsAChangedPolicy) {
    Device files("on", "active", "5000");
    SleepingDevice device(files.power());
    device.access(start);
    ASSERT_EQ(device.access(start + 1s), Access::read);

    files.set("control", "auto");

    EXPECT_EQ(device.access(start + 62s), Access::read);
    EXPECT_EQ(device.access(start + 64s), Access::wait);
}

TEST(SleepingDevice, AllocatesNothing) {
    const Device files("auto", "active", "5000");
    SleepingDevice device(files.power());
    device.access(start);
    device.access(start + 1s);

    const auto before = test::allocationsOfThisThread();
    for (int second = 0; second < 120; ++second) {
        device.access(start + std::chrono::seconds{second});
    }

    EXPECT_EQ(test::allocationsOfThisThread(), before);
}

TEST(SleepingDevices, FindsOneObjectForEveryChipOfADevice) {
    const Device files("auto", "active", "5000");
    SleepingDevices devices;

    const auto device = devices.find(files.chip("corsaircpro"));

    ASSERT_TRUE(device);
    EXPECT_EQ(devices.find(files.chip("corsaircpro")), device);
}

TEST(SleepingDevices, HasNothingForADeviceThatNeverSleeps) {
    const Device files("auto", "unsupported", "");
    SleepingDevices devices;

    EXPECT_FALSE(devices.find(files.chip("nct6798")));
    EXPECT_FALSE(devices.find({{}, {}, "coretemp", ChipKind::processor, "/no/such/device"}));
}

}  // namespace
}  // namespace kestro
