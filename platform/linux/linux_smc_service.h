#pragma once

#include "core/platform/clock.h"
#include "core/platform/smc_service.h"
#include "platform/linux/hwmon_fans.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kestro {

/// Answers the controller's fan keys from hwmon: "FNum" as "ui8 ", and for each fan actual, minimum, maximum
/// and target speed ("F0Ac", "F0Mn", "F0Mx", "F0Tg") as "flt ". Any thread, one call at a time; allocates
/// nothing in steady state.
///
/// A key whose figure the fan does not have fails, as does one that cannot be read at the moment. The list of
/// fans is brought up to date when the information of "FNum" is asked for, with which every listing begins.
class LinuxSMCService final : public SMCService {
public:
    /// `root` is where the machine's file system is mounted.
    explicit LinuxSMCService(const Clock& clock, std::string root = "/");

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

    std::optional<FanKey> fanKey(std::uint32_t key) const;
    bool hasFigure(const FanKey& key) const;
    std::optional<double> readFigure(const FanKey& key);

    const Clock& clock_;
    HwmonFans fans_;
    bool isOpen_ = false;
};

}  // namespace kestro
