#pragma once

#include "core/platform/clock.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/sensors/hwmon_chip.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace kestro {

/// A device that the kernel suspends while nothing uses it (Documentation/power/runtime_pm.rst), such as a
/// graphics card. Reading one of its sensors is a use: it wakes the device up, or starts the autosuspend delay
/// again. Shared by all readers of the device; any thread. Allocates nothing after the first call.
class SleepingDevice {
public:
    enum class Access : std::uint8_t {
        read,
        wait,    ///< read too recently: another read now would keep the device from falling asleep
        asleep,  ///< a read would wake it up
    };

    /// `powerDirectory` is the "power" folder of the device.
    explicit SleepingDevice(const std::string& powerDirectory);

    /// Whether to read the device's sensors now. Allows one burst of reads, then none for twice the autosuspend
    /// delay. A device without such a delay falls asleep as soon as it is unused, and needs no pause.
    Access access(MonotonicTime now);

private:
    std::chrono::milliseconds pause(MonotonicTime now);
    bool holds(PersistentFile& file, std::string_view beginning);

    std::mutex mutex_;
    ReadBuffer buffer_;
    PersistentFile status_;
    PersistentFile control_;
    PersistentFile delay_;
    std::optional<MonotonicTime> pauseRead_;
    std::chrono::milliseconds pause_{0};
    std::optional<MonotonicTime> burst_;  ///< when the latest burst of reads began
};

/// The devices behind sensor chips that can fall asleep. Fans and temperatures of one device share its pauses if
/// their owners share this object. Any thread.
class SleepingDevices {
public:
    /// nullptr: the chip's device never sleeps while the machine is awake.
    std::shared_ptr<SleepingDevice> find(const HwmonChip& chip);

private:
    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<SleepingDevice>> devices_;  ///< by resolved path
};

}  // namespace kestro
