#pragma once

#include "core/platform/smc_record.h"
#include "core/telemetry/fan_telemetry.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace kestro {

class SMCService;

/// Reads keys of the system management controller, here those of the fans. Read-only: no operation writes a key.
/// Opens the connection once, retries at each reading while there is none, and closes it on destruction. Any
/// thread, one key at a time.
class SMCReader {
public:
    explicit SMCReader(SMCService& service);
    ~SMCReader();
    SMCReader(const SMCReader&) = delete;
    SMCReader& operator=(const SMCReader&) = delete;

    /// The process-wide reader on the current platform, created on first use.
    static SMCReader& shared();

    /// The value of a four-character key. nullopt: no controller, no such key, an unsupported type, or a value
    /// that is not finite.
    std::optional<double> readValue(std::string_view key);

    /// Every fan in the controller's order; empty without a controller or without fans. A missing speed reads as 0
    /// (current), the current speed (target), 1200 (minimum) or 7800 (maximum).
    std::vector<FanTelemetry> readFans();

    /// The same, but into an existing list, reusing its storage.
    void readFans(std::vector<FanTelemetry>& fans);

    /// Fills in what the machine calls each of these fans; empty for a fan without a name.
    void readLabels(std::vector<FanTelemetry>& fans);

private:
    void open();
    std::optional<std::uint32_t> readKey(std::string_view key, SMCRecord& output);
    std::optional<double> readFanValue(std::int64_t fan, std::string_view suffix);

    SMCService& service_;
    std::uint32_t conn_ = 0;  ///< 0: not open
    std::mutex lock_;
};

}  // namespace kestro
