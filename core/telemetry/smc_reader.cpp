#include "core/telemetry/smc_reader.h"

#include "core/base/text.h"
#include "core/platform/platform.h"
#include "core/platform/smc_service.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>

namespace kestro {

namespace {

// The count is a single byte; a greater value is corrupt.
constexpr double mostFans = 255;

std::optional<double> decode(std::uint32_t type, const SMCRecord& record) {
    const unsigned b0 = record[smc::bytesOffset];
    const unsigned b1 = record[smc::bytesOffset + 1];
    switch (type) {
        case smc::code("ui8 "):
            return b0;
        case smc::code("ui16"):
            return b0 * 256 + b1;
        case smc::code("flt "):
            return std::bit_cast<float>(smc::read32(record, smc::bytesOffset));
        case smc::code("fpe2"):
            // The two fraction bits are dropped on purpose.
            return b0 * 64 + b1 / 4;
        case smc::code("sp78"):
            // Unsigned on purpose: a negative reading becomes a value near 256.
            return (b0 * 256 + b1) / 256.0;
        default:
            return std::nullopt;
    }
}

/// A fan's description, padded with blanks and zero bytes. A fan record ("{fds") begins with four bytes of
/// numbers. Empty for other types.
std::string_view decodeText(std::uint32_t type, const SMCRecord& record) {
    constexpr std::size_t fanRecordSize = 16;
    const std::string_view bytes(reinterpret_cast<const char*>(record.data()), record.size());
    if (type == smc::code("{fds")) {
        return trimmed(bytes.substr(smc::bytesOffset + 4, fanRecordSize - 4));
    }
    return type == smc::code("ch8*") ? trimmed(bytes.substr(smc::bytesOffset)) : std::string_view{};
}

/// "F", the fan's index and two letters, without allocating.
class FanKey {
public:
    FanKey(std::int64_t fan, std::string_view suffix) {
        char* const end = std::to_chars(key_.begin() + 1, key_.end() - suffix.size(), fan).ptr;
        std::ranges::copy(suffix, end);
        size_ = static_cast<std::size_t>(end - key_.data()) + suffix.size();
    }
    std::string_view text() const { return {key_.data(), size_}; }

private:
    std::array<char, 24> key_{'F'};
    std::size_t size_ = 0;
};

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
    // Never destroyed: it lives as long as the process and outlives the platform created in main.
    static auto* const reader = new SMCReader(Platform::current().smc);
    return *reader;
}

void SMCReader::open() {
    conn_ = service_.open().value_or(0);
}

std::optional<double> SMCReader::readValue(std::string_view key) {
    const std::scoped_lock guard(lock_);
    SMCRecord output{};
    const auto type = readKey(key, output);
    const auto value = type ? decode(*type, output) : std::nullopt;
    return value && std::isfinite(*value) ? value : std::nullopt;
}

/// The type of a key, and its value in `output`. nullopt: it cannot be read.
std::optional<std::uint32_t> SMCReader::readKey(std::string_view key, SMCRecord& output) {
    if (conn_ == 0) {
        open();
    }
    if (conn_ == 0) {
        return std::nullopt;
    }
    SMCRecord input{};
    smc::write32(input, smc::keyOffset, smc::code(key));
    input[smc::commandOffset] = smc::readInformationCommand;
    if (!service_.callStructMethod(conn_, input, output)) {
        return std::nullopt;
    }
    const std::uint32_t type = smc::read32(output, smc::typeOffset);
    smc::write32(input, smc::sizeOffset, smc::read32(output, smc::sizeOffset));
    input[smc::commandOffset] = smc::readBytesCommand;
    output.fill(0);
    return service_.callStructMethod(conn_, input, output) ? std::optional(type) : std::nullopt;
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
    return readValue(FanKey(fan, suffix).text());
}

void SMCReader::readLabels(std::vector<FanTelemetry>& fans) {
    const std::scoped_lock guard(lock_);
    for (FanTelemetry& fan : fans) {
        SMCRecord output{};
        const auto type = readKey(FanKey(fan.id, "ID").text(), output);
        fan.label.assign(type ? decodeText(*type, output) : std::string_view{});
    }
}

}  // namespace kestro
