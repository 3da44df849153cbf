#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

#include "core/telemetry/fan_telemetry.h"

namespace kestro {

class SMCService;

/// Reads keys of the system management controller, in this program those of the fans. It only ever reads:
/// there is no operation that writes a key. Opens the connection once, tries again at each reading while
/// there is none, and closes it when it dies. Any thread, one key at a time.
class SMCReader {
public:
    explicit SMCReader(SMCService& service);
    ~SMCReader();
    SMCReader(const SMCReader&) = delete;
    SMCReader& operator=(const SMCReader&) = delete;

    /// The process-wide reader on the current platform, made at first use.
    static SMCReader& shared();

    /// The value of a key of four characters. nullopt: no controller, no such key, a type that is not
    /// understood, or a value that is not a finite number.
    std::optional<double> readValue(std::string_view key);

    /// Every fan in the controller's order; empty without a controller or without fans. A speed that is
    /// missing reads 0 (current), the current speed (target), 1200 (minimum) or 7800 (maximum).
    std::vector<FanTelemetry> readFans();

    /// The same into an existing list, whose storage is used again.
    void readFans(std::vector<FanTelemetry>& fans);

private:
    void open();
    std::optional<double> readFanValue(std::int64_t fan, std::string_view suffix);

    SMCService& service_;
    std::uint32_t conn_ = 0;  ///< 0: not open
    std::mutex lock_;
};

}  // namespace kestro
