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
constexpr std::uint8_t keyNotFound = 132;

bool isZero(const SMCRecord& record) {
    return record == SMCRecord{};
}

/// Only the key, the command and, for reading bytes, the size may be set.
bool isWellFormed(const SMCRecord& input) {
    SMCRecord rest = input;
    smc::write32(rest, smc::keyOffset, 0);
    rest[smc::commandOffset] = 0;
    if (input[smc::commandOffset] == smc::readBytesCommand) {
        smc::write32(rest, smc::sizeOffset, 0);
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
    switch (input[smc::commandOffset]) {
        case smc::readInformationCommand:
            return readInformation(smc::read32(input, smc::keyOffset), output);
        case smc::readBytesCommand:
            return readBytes(smc::read32(input, smc::keyOffset), smc::read32(input, smc::sizeOffset), output);
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
    keys_[smc::code(key)].type = smc::code("fpe2");
}

void SimulatedSMCService::setRaw(std::string_view key, std::string_view type,
                                 std::span<const std::uint8_t> bytes) {
    assert(key.size() == 4 && type.size() == 4 && bytes.size() <= 32);
    Key entry;
    entry.type = smc::code(type);
    entry.size = static_cast<std::uint32_t>(bytes.size());
    std::ranges::copy(bytes, entry.bytes.begin());
    keys_[smc::code(key)] = entry;
}

void SimulatedSMCService::remove(std::string_view key) {
    keys_.erase(smc::code(key));
}

void SimulatedSMCService::setFans(std::span<const float> speeds) {
    assert(speeds.size() <= 10);
    setUi8("FNum", static_cast<std::uint8_t>(speeds.size()));
    for (std::size_t fan = 0; fan < speeds.size(); ++fan) {
        const std::string prefix = fmt::format("F{}", fan);
        setFloat(prefix + "Ac", speeds[fan]);
        keys_[smc::code(prefix + "Ac")].wobble = 24;
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
        output[smc::resultOffset] = keyNotFound;
        return answersMissingKeys;
    }
    smc::write32(output, smc::sizeOffset, found->second.size);
    smc::write32(output, smc::typeOffset, found->second.type);
    return true;
}

bool SimulatedSMCService::readBytes(std::uint32_t key, std::uint32_t size, SMCRecord& output) {
    ++bytesCalls_;
    if (bytesFailure.strikes()) {
        return false;
    }
    const auto found = keys_.find(key);
    if (found == keys_.end()) {
        output[smc::resultOffset] = keyNotFound;
        return answersMissingKeys;
    }
    const Key& entry = found->second;
    if (size != entry.size) {
        ++malformedRecords_;
        return false;
    }
    std::ranges::copy(entry.bytes, output.begin() + smc::bytesOffset);
    if (entry.wobble > 0) {
        float value = 0;
        std::memcpy(&value, entry.bytes.data(), sizeof value);
        value += static_cast<float>(entry.wobble * pattern_.wave(key));
        std::memcpy(output.data() + smc::bytesOffset, &value, sizeof value);
    }
    return true;
}

}  // namespace kestro
