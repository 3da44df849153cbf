#pragma once

#include "core/platform/smc_service.h"
#include "platform/simulated/simulated_failure.h"
#include "platform/simulated/simulated_pattern.h"

#include <map>
#include <span>
#include <string_view>

namespace kestro {

/// A management controller that implements the 80-byte record protocol, with two fans at 1420 and 1460 rpm.
class SimulatedSMCService final : public SMCService {
public:
    explicit SimulatedSMCService(const SimulatedPattern& pattern);

    std::optional<std::uint32_t> open() override;
    bool callStructMethod(std::uint32_t connection, const SMCRecord& input, SMCRecord& output) override;
    void close(std::uint32_t connection) override;

    SimulatedFailure openFailure;
    SimulatedFailure informationFailure;  ///< for command 9
    SimulatedFailure bytesFailure;        ///< for command 5

    /// If set, a missing key returns result 132 and no type instead of failing the call.
    bool answersMissingKeys = false;

    /// A key's value, encoded as its type requires.
    void setUi8(std::string_view key, std::uint8_t value);
    void setUi16(std::string_view key, std::uint16_t value);
    void setFloat(std::string_view key, float value);
    void setFpe2(std::string_view key, double value);
    void setRaw(std::string_view key, std::string_view type, std::span<const std::uint8_t> bytes);
    void remove(std::string_view key);

    /// The whole inventory: "FNum" and four keys per fan, with a range of 1200 to 7300 rpm.
    void setFans(std::span<const float> speeds);

    std::int64_t openConnections() const { return openConnections_; }
    std::int64_t opened() const { return opened_; }  ///< attempts, including failed ones
    std::int64_t informationCalls() const { return informationCalls_; }
    std::int64_t bytesCalls() const { return bytesCalls_; }
    std::int64_t malformedRecords() const { return malformedRecords_; }  ///< records that violate the protocol

private:
    struct Key {
        std::uint32_t type = 0;
        std::array<std::uint8_t, 32> bytes{};
        std::uint32_t size = 0;
        double wobble = 0;  ///< amplitude around a set "flt " value
    };

    bool readInformation(std::uint32_t key, SMCRecord& output);
    bool readBytes(std::uint32_t key, std::uint32_t size, SMCRecord& output);

    const SimulatedPattern& pattern_;
    std::map<std::uint32_t, Key> keys_;
    std::int64_t openConnections_ = 0;
    std::int64_t opened_ = 0;
    std::int64_t informationCalls_ = 0;
    std::int64_t bytesCalls_ = 0;
    std::int64_t malformedRecords_ = 0;
};

}  // namespace kestro
