#include "platform/linux/sensors/sleeping_devices.h"

#include "core/base/text.h"

#include <algorithm>

namespace kestro {
namespace {

constexpr std::size_t deviceLimit = 256;

// One sample reads all inputs of a device in this time; shorter than the shortest period between two samples.
constexpr std::chrono::milliseconds longestBurst{400};

// Administrators and power tools rarely change the policy of a device.
constexpr std::chrono::seconds policyPeriod{60};

constexpr std::chrono::milliseconds longestDelay{24L * 60 * 60 * 1000};

}  // namespace

SleepingDevice::SleepingDevice(const std::string& powerDirectory)
    : buffer_(4096),
      status_(powerDirectory + "/runtime_status"),
      control_(powerDirectory + "/control"),
      delay_(powerDirectory + "/autosuspend_delay_ms") {}

bool SleepingDevice::holds(PersistentFile& file, std::string_view beginning) {
    const auto text = file.read(buffer_);
    return text && text->starts_with(beginning);
}

std::chrono::milliseconds SleepingDevice::pause(MonotonicTime now) {
    if (pauseRead_ && now - *pauseRead_ < policyPeriod) {
        return pause_;
    }
    pauseRead_ = now;
    pause_ = {};
    if (!holds(control_, "on")) {
        // The read fails for drivers that do not use a delay; a negative delay keeps the device awake.
        const auto text = delay_.read(buffer_);
        const std::chrono::milliseconds delay(text ? parseTrimmed<std::int32_t>(*text).value_or(0) : 0);
        pause_ = 2 * std::clamp(delay, std::chrono::milliseconds{0}, longestDelay);
    }
    return pause_;
}

SleepingDevice::Access SleepingDevice::access(MonotonicTime now) {
    const std::scoped_lock guard(mutex_);
    if (burst_ && now - *burst_ < longestBurst) {
        return Access::read;
    }
    if (holds(status_, "suspend")) {
        return Access::asleep;
    }
    if (burst_ && now - *burst_ < pause(now)) {
        return Access::wait;
    }
    burst_ = now;
    return Access::read;
}

std::shared_ptr<SleepingDevice> SleepingDevices::find(const HwmonChip& chip) {
    const auto power = chip.parent + "/power";
    const auto status = readFile(power + "/runtime_status");
    const bool canSleep =
        status ? !status->starts_with("unsupported") : isReadable(power + "/autosuspend_delay_ms");
    if (!canSleep && chip.kind != ChipKind::graphics) {
        return nullptr;
    }
    const std::scoped_lock guard(mutex_);
    // Only devices that are gone for good pile up.
    if (devices_.size() == deviceLimit) {
        devices_.clear();
    }
    auto& device = devices_[resolvedPath(power)];
    if (!device) {
        device = std::make_shared<SleepingDevice>(resolvedPath(power));
    }
    return device;
}

}  // namespace kestro
