#pragma once

#include "core/platform/clock.h"
#include "core/platform/smc_service.h"
#include "platform/linux/sensors/hwmon_fans.h"
#include "platform/linux/sensors/sleeping_devices.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace kestro {

/// Emulates the controller's fan keys from hwmon: "FNum" as "ui8 ", and for each fan its actual, minimum, maximum
/// and target speed ("F0Ac", "F0Mn", "F0Mx", "F0Tg") as "flt " and its label ("F0ID") as "ch8*". Any thread, one
/// call at a time; allocates nothing in steady state.
///
/// A key fails if the fan lacks that value or it cannot be read at the moment. Querying the information of "FNum",
/// with which every listing starts, updates the list of fans.
class LinuxSMCService final : public SMCService {
public:
    /// `root` is the mount point of the machine's file system. `devices` is shared with the temperature sensors.
    explicit LinuxSMCService(const Clock& clock, std::string root = "/",
                             std::shared_ptr<SleepingDevices> devices = std::make_shared<SleepingDevices>());

    /// nullopt while the machine has no fans.
    std::optional<std::uint32_t> open() override;

    bool callStructMethod(std::uint32_t connection, const SMCRecord& input, SMCRecord& output) override;
    void close(std::uint32_t connection) override;

private:
    /// A fan and the two letters of one of its keys.
    struct FanKey {
        std::size_t fan = 0;
        std::uint16_t figure = 0;
    };

    bool readBytes(const FanKey& key, SMCRecord& output);
    std::optional<FanKey> fanKey(std::uint32_t key) const;
    bool hasFigure(const FanKey& key) const;
    std::optional<double> readFigure(const FanKey& key);

    const Clock& clock_;
    HwmonFans fans_;
    bool isOpen_ = false;
};

}  // namespace kestro
