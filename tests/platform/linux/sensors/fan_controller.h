#pragma once

#include "platform/linux/sensors/linux_smc_service.h"
#include "tests/platform/linux/support.h"

#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace kestro::test {

/// The path of an attribute of the only chip.
inline std::string at(std::string_view attribute) {
    return std::string("/sys/class/hwmon/hwmon0/").append(attribute);
}

/// Queries like a reader: information first, then that many bytes.
class Controller {
public:
    explicit Controller(const std::string& root) : service(clock, root), connection(service.open().value_or(0)) {}

    std::optional<std::string> type(std::string_view key) {
        SMCRecord output{};
        if (!service.callStructMethod(connection, record(key, 9, 0), output)) {
            return std::nullopt;
        }
        return std::string(output.rbegin() + 44, output.rbegin() + 48);
    }

    std::optional<double> value(std::string_view key) {
        SMCRecord output{};
        if (!service.callStructMethod(connection, record(key, 9, 0), output)) {
            return std::nullopt;
        }
        const std::uint8_t size = output[28];
        const bool isByte = output[35] == 'u';
        if (!service.callStructMethod(connection, record(key, 5, size), output)) {
            return std::nullopt;
        }
        float number = 0;
        std::memcpy(&number, output.data() + 48, sizeof number);
        return isByte ? output[48] : number;
    }

    static SMCRecord record(std::string_view key, std::uint8_t command, std::uint8_t size) {
        SMCRecord input{};
        std::uint32_t code = 0;
        for (const char character : key) {
            code = code * 256 + static_cast<unsigned char>(character);
        }
        std::memcpy(input.data(), &code, sizeof code);
        input[28] = size;
        input[42] = command;
        return input;
    }

    ManualClock clock;
    LinuxSMCService service;
    std::uint32_t connection;
};

}  // namespace kestro::test
