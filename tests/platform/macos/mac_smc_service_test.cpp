#include "platform/macos/mac_smc_service.h"

#include "core/telemetry/smc_reader.h"
#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace kestro {
namespace {

using fakes::FakeMac;

std::vector<std::uint8_t> bytesOf(float value) {
    std::vector<std::uint8_t> bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

void addFans(FakeMac& mac) {
    mac.ioKit.setKey("FNum", "ui8 ", {2});
    for (const std::string fan : {"F0", "F1"}) {
        mac.ioKit.setKey(fan + "Ac", "flt ", bytesOf(1420));
        mac.ioKit.setKey(fan + "Mn", "flt ", bytesOf(1200));
        mac.ioKit.setKey(fan + "Mx", "fpe2", {0x72, 0x10});
        mac.ioKit.setKey(fan + "Tg", "ui16", {0x05, 0xDC});
    }
}

SMCRecord informationRequest(std::string_view key) {
    SMCRecord record{};
    smc::write32(record, smc::keyOffset, smc::code(key));
    record[smc::commandOffset] = smc::readInformationCommand;
    return record;
}

TEST(MacSMCService, OpensOneConnectionAndReleasesWhatLedToIt) {
    FakeMac mac;
    MacSMCService service;

    const auto connection = service.open();

    ASSERT_TRUE(connection);
    EXPECT_NE(*connection, 0U);
    EXPECT_EQ(mac.ioKit.held.size(), 1U);
    EXPECT_EQ(mac.ioKit.held.at(*connection), "connection");
    service.close(*connection);
    expectNothingHeld(mac);
}

TEST(MacSMCService, HasNoConnectionWithoutAController) {
    FakeMac mac;
    mac.ioKit.controllers = 0;
    MacSMCService service;

    EXPECT_FALSE(service.open());
    expectNothingHeld(mac);
}

TEST(MacSMCService, ExchangesRecords) {
    FakeMac mac;
    mac.ioKit.setKey("FNum", "ui8 ", {2});
    MacSMCService service;
    const auto connection = service.open().value();
    SMCRecord output{};

    ASSERT_TRUE(service.callStructMethod(connection, informationRequest("FNum"), output));
    EXPECT_EQ(smc::read32(output, smc::typeOffset), smc::code("ui8 "));
    EXPECT_EQ(smc::read32(output, smc::sizeOffset), 1U);

    ASSERT_TRUE(service.callStructMethod(connection, informationRequest("None"), output));
    EXPECT_EQ(output[smc::resultOffset], 0x84);
    EXPECT_EQ(mac.ioKit.malformedRecords, 0);
    service.close(connection);
}

TEST(MacSMCService, RejectsARecordOfAnotherLength) {
    FakeMac mac;
    mac.ioKit.recordSize = 76;
    MacSMCService service;
    const auto connection = service.open().value();
    SMCRecord output{};

    EXPECT_FALSE(service.callStructMethod(connection, informationRequest("FNum"), output));
    service.close(connection);
}

TEST(MacSMCService, SendsNoOtherCommandThanTheTwoThatRead) {
    FakeMac mac;
    MacSMCService service;
    const auto connection = service.open().value();
    SMCRecord output{};

    for (int command = 0; command < 256; ++command) {
        SMCRecord input = informationRequest("FNum");
        input[smc::commandOffset] = static_cast<std::uint8_t>(command);
        EXPECT_EQ(service.callStructMethod(connection, input, output), command == 5 || command == 9);
    }

    EXPECT_EQ(mac.ioKit.commands, 2);
    service.close(connection);
}

TEST(MacSMCService, FeedsTheReader) {
    FakeMac mac;
    addFans(mac);
    MacSMCService service;
    {
        SMCReader reader(service);

        const auto fans = reader.readFans();

        ASSERT_EQ(fans.size(), 2U);
        EXPECT_EQ(fans[0].currentRPM, 1420);
        EXPECT_EQ(fans[0].minRPM, 1200);
        EXPECT_EQ(fans[1].maxRPM, 7300);
        EXPECT_EQ(fans[1].targetRPM, 1500);
        EXPECT_EQ(mac.ioKit.malformedRecords, 0);
    }
    expectNothingHeld(mac);
}

TEST(MacSMCService, HoldsNothingWhenCallsFail) {
    useWithFailingCalls(addFans, [](FakeMac&) {
        MacSMCService service;
        SMCReader reader(service);
        reader.readFans();
    });
}

TEST(MacSMCService, IsFoundAgainOnceItsDriverHasStarted) {
    FakeMac mac;
    addFans(mac);
    mac.ioKit.controllers = 0;
    MacSMCService service;
    SMCReader reader(service);
    EXPECT_TRUE(reader.readFans().empty());

    mac.ioKit.controllers = 1;

    EXPECT_EQ(reader.readFans().size(), 2U);
}

}  // namespace
}  // namespace kestro
