#include "core/telemetry/smc_reader.h"

#include "core/platform/platform.h"
#include "core/platform/smc_service.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>

namespace kestro {

namespace {

// The parameter record: key at 0, size of the value at 28, its type at 32, command at 42, value at 48. The
// other fields stay 0.
constexpr std::size_t keyOffset = 0;
constexpr std::size_t sizeOffset = 28;
constexpr std::size_t typeOffset = 32;
constexpr std::size_t commandOffset = 42;
constexpr std::size_t bytesOffset = 48;
constexpr std::uint8_t readBytes = 5;
constexpr std::uint8_t readKeyInformation = 9;

// A count beyond what its one byte can hold is damage, not fans.
constexpr double mostFans = 255;

/// A text packed big-endian into a code; of a longer text the last four bytes remain.
constexpr std::uint32_t code(std::string_view text) {
    std::uint32_t packed = 0;
    for (const char character : text) {
        packed = packed * 256 + static_cast<std::uint8_t>(character);
    }
    return packed;
}

std::uint32_t read32(const SMCRecord& record, std::size_t offset) {
    return record[offset] | std::uint32_t{record[offset + 1]} << 8 | std::uint32_t{record[offset + 2]} << 16 |
           std::uint32_t{record[offset + 3]} << 24;
}

void write32(SMCRecord& record, std::size_t offset, std::uint32_t value) {
    for (std::size_t byte = 0; byte < 4; ++byte) {
        record[offset + byte] = static_cast<std::uint8_t>(value >> (8 * byte));
    }
}

std::optional<double> decode(std::uint32_t type, const SMCRecord& record) {
    const unsigned b0 = record[bytesOffset];
    const unsigned b1 = record[bytesOffset + 1];
    switch (type) {
        case code("ui8 "):
            return b0;
        case code("ui16"):
            return b0 * 256 + b1;
        case code("flt "):
            return std::bit_cast<float>(read32(record, bytesOffset));
        case code("fpe2"):
            // The two bits of the fraction are dropped on purpose.
            return b0 * 64 + b1 / 4;
        case code("sp78"):
            // Unsigned on purpose: a negative reading comes out near 256.
            return (b0 * 256 + b1) / 256.0;
        default:
            return std::nullopt;
    }
}

void assignName(FanTelemetry& fan, std::size_t count) {
    if (count == 2) {
        fan.name = fan.id == 0 ? "Left Fan" : "Right Fan";
        return;
    }
    std::array<char, 20> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), fan.id + 1).ptr;
    fan.name = "Fan #";
    fan.name.append(digits.begin(), end);
}

}  // namespace

SMCReader::SMCReader(SMCService& service) : service_(service) {
    open();
}

SMCReader::~SMCReader() {
    if (conn_ != 0) {
        service_.close(conn_);
    }
}

SMCReader& SMCReader::shared() {
    // Never destroyed: it lives as long as the process, and longer than the platform that main made.
    static auto* const reader = new SMCReader(Platform::current().smc);
    return *reader;
}

void SMCReader::open() {
    conn_ = service_.open().value_or(0);
}

std::optional<double> SMCReader::readValue(std::string_view key) {
    const std::scoped_lock guard(lock_);
    if (conn_ == 0) {
        open();
    }
    if (conn_ == 0) {
        return std::nullopt;
    }
    SMCRecord input{};
    SMCRecord output{};
    write32(input, keyOffset, code(key));
    input[commandOffset] = readKeyInformation;
    if (!service_.callStructMethod(conn_, input, output)) {
        return std::nullopt;
    }
    const std::uint32_t type = read32(output, typeOffset);
    write32(input, sizeOffset, read32(output, sizeOffset));
    input[commandOffset] = readBytes;
    output.fill(0);
    if (!service_.callStructMethod(conn_, input, output)) {
        return std::nullopt;
    }
    const auto value = decode(type, output);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::vector<FanTelemetry> SMCReader::readFans() {
    std::vector<FanTelemetry> fans;
    readFans(fans);
    return fans;
}

void SMCReader::readFans(std::vector<FanTelemetry>& fans) {
    const auto count = static_cast<std::size_t>(std::clamp(readValue("FNum").value_or(0), 0.0, mostFans));
    fans.resize(count);
    for (std::size_t index = 0; index < count; ++index) {
        FanTelemetry& fan = fans[index];
        fan.id = static_cast<std::int64_t>(index);
        assignName(fan, count);
        fan.currentRPM = readFanValue(fan.id, "Ac").value_or(0);
        fan.minRPM = readFanValue(fan.id, "Mn").value_or(1200);
        fan.maxRPM = readFanValue(fan.id, "Mx").value_or(7800);
        fan.targetRPM = readFanValue(fan.id, "Tg").value_or(fan.currentRPM);
    }
}

std::optional<double> SMCReader::readFanValue(std::int64_t fan, std::string_view suffix) {
    std::array<char, 24> key{'F'};
    char* const end = std::to_chars(key.begin() + 1, key.end() - suffix.size(), fan).ptr;
    std::ranges::copy(suffix, end);
    return readValue({key.data(), static_cast<std::size_t>(end - key.data()) + suffix.size()});
}

}  // namespace kestro
