#include "platform/simulated/simulated_smc_service.h"

#include <fmt/format.h>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace kestro {

namespace {

constexpr std::uint32_t theConnection = 0x1707;
constexpr std::size_t keyOffset = 0;
constexpr std::size_t sizeOffset = 28;
constexpr std::size_t typeOffset = 32;
constexpr std::size_t resultOffset = 40;
constexpr std::size_t commandOffset = 42;
constexpr std::size_t bytesOffset = 48;
constexpr std::uint8_t keyNotFound = 132;
constexpr std::uint8_t readBytesCommand = 5;
constexpr std::uint8_t readInformationCommand = 9;

std::uint32_t code(std::string_view text) {
    std::uint32_t packed = 0;
    for (const char character : text) {
        packed = packed * 256 + static_cast<std::uint8_t>(character);
    }
    return packed;
}

std::uint32_t read32(const SMCRecord& record, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t byte = 4; byte-- > 0;) {
        value = value * 256 + record[offset + byte];
    }
    return value;
}

void write32(SMCRecord& record, std::size_t offset, std::uint32_t value) {
    for (std::size_t byte = 0; byte < 4; ++byte) {
        record[offset + byte] = static_cast<std::uint8_t>(value >> (8 * byte));
    }
}

bool isZero(const SMCRecord& record) {
    return record == SMCRecord{};
}

/// Nothing but the key, the command and, for a read of bytes, the size may be set.
bool isWellFormed(const SMCRecord& input) {
    SMCRecord rest = input;
    write32(rest, keyOffset, 0);
    rest[commandOffset] = 0;
    if (input[commandOffset] == readBytesCommand) {
        write32(rest, sizeOffset, 0);
    }
    return isZero(rest);
}

}  // namespace

SimulatedSMCService::SimulatedSMCService(const SimulatedPattern& pattern) : pattern_(pattern) {
    setFans(std::vector<float>{1420, 1460});
    setFloat("F1Mx", 7800);
}

std::optional<std::uint32_t> SimulatedSMCService::open() {
    ++opened_;
    if (openFailure.strikes()) {
        return std::nullopt;
    }
    ++openConnections_;
    return theConnection;
}

bool SimulatedSMCService::callStructMethod(std::uint32_t connection, const SMCRecord& input, SMCRecord& output) {
    if (connection != theConnection || openConnections_ == 0 || !isWellFormed(input) || !isZero(output)) {
        ++malformedRecords_;
        return false;
    }
    switch (input[commandOffset]) {
        case readInformationCommand:
            return readInformation(read32(input, keyOffset), output);
        case readBytesCommand:
            return readBytes(read32(input, keyOffset), read32(input, sizeOffset), output);
        default:
            ++malformedRecords_;
            return false;
    }
}

void SimulatedSMCService::close([[maybe_unused]] std::uint32_t connection) {
    assert(connection == theConnection && openConnections_ > 0);
    --openConnections_;
}

void SimulatedSMCService::setUi8(std::string_view key, std::uint8_t value) {
    setRaw(key, "ui8 ", std::vector<std::uint8_t>{value});
}

void SimulatedSMCService::setUi16(std::string_view key, std::uint16_t value) {
    setRaw(
        key, "ui16",
        std::vector<std::uint8_t>{static_cast<std::uint8_t>(value / 256), static_cast<std::uint8_t>(value % 256)});
}

void SimulatedSMCService::setFloat(std::string_view key, float value) {
    std::vector<std::uint8_t> bytes(4);
    std::memcpy(bytes.data(), &value, bytes.size());
    setRaw(key, "flt ", bytes);
}

void SimulatedSMCService::setFpe2(std::string_view key, double value) {
    setUi16(key, static_cast<std::uint16_t>(std::lround(value * 4)));
    keys_[code(key)].type = code("fpe2");
}

void SimulatedSMCService::setSp78(std::string_view key, double value) {
    setUi16(key, static_cast<std::uint16_t>(std::lround(value * 256)));
    keys_[code(key)].type = code("sp78");
}

void SimulatedSMCService::setRaw(std::string_view key, std::string_view type,
                                 std::span<const std::uint8_t> bytes) {
    assert(key.size() == 4 && type.size() == 4 && bytes.size() <= 32);
    Key entry;
    entry.type = code(type);
    entry.size = static_cast<std::uint32_t>(bytes.size());
    std::ranges::copy(bytes, entry.bytes.begin());
    keys_[code(key)] = entry;
}

void SimulatedSMCService::remove(std::string_view key) {
    keys_.erase(code(key));
}

void SimulatedSMCService::setFans(std::span<const float> speeds) {
    assert(speeds.size() <= 10);
    setUi8("FNum", static_cast<std::uint8_t>(speeds.size()));
    for (std::size_t fan = 0; fan < speeds.size(); ++fan) {
        const std::string prefix = fmt::format("F{}", fan);
        setFloat(prefix + "Ac", speeds[fan]);
        keys_[code(prefix + "Ac")].wobble = 24;
        setFloat(prefix + "Mn", 1200);
        setFloat(prefix + "Mx", 7300);
        setFloat(prefix + "Tg", speeds[fan]);
    }
}

bool SimulatedSMCService::readInformation(std::uint32_t key, SMCRecord& output) {
    ++informationCalls_;
    if (informationFailure.strikes()) {
        return false;
    }
    const auto found = keys_.find(key);
    if (found == keys_.end()) {
        output[resultOffset] = keyNotFound;
        return answersMissingKeys;
    }
    write32(output, sizeOffset, found->second.size);
    write32(output, typeOffset, found->second.type);
    return true;
}

bool SimulatedSMCService::readBytes(std::uint32_t key, std::uint32_t size, SMCRecord& output) {
    ++bytesCalls_;
    if (bytesFailure.strikes()) {
        return false;
    }
    const auto found = keys_.find(key);
    if (found == keys_.end()) {
        output[resultOffset] = keyNotFound;
        return answersMissingKeys;
    }
    const Key& entry = found->second;
    if (size != entry.size) {
        ++malformedRecords_;
        return false;
    }
    std::ranges::copy(entry.bytes, output.begin() + bytesOffset);
    if (entry.wobble > 0) {
        float value = 0;
        std::memcpy(&value, entry.bytes.data(), sizeof value);
        value += static_cast<float>(entry.wobble * pattern_.wave(key));
        std::memcpy(output.data() + bytesOffset, &value, sizeof value);
    }
    return true;
}

}  // namespace kestro
