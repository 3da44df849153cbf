#pragma once

#include "core/platform/smc_service.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>

namespace kestro {

/// What every SMCService promises. A Subject has `port()`, on a machine with two fans, and `removeController()`,
/// after which there is none.
template <typename Subject>
class SMCServiceContract : public testing::Test {
protected:
    SMCRecord request(std::string_view key, std::uint8_t command, std::uint32_t size = 0) const {
        SMCRecord record{};
        smc::write32(record, smc::keyOffset, smc::code(key));
        smc::write32(record, smc::sizeOffset, size);
        record[smc::commandOffset] = command;
        return record;
    }

    Subject subject;
};
TYPED_TEST_SUITE_P(SMCServiceContract);

TYPED_TEST_P(SMCServiceContract, OpensConnectionsAgainAndAgain) {
    SMCService& service = this->subject.port();

    for (int round = 0; round < 3; ++round) {
        const auto connection = service.open();
        ASSERT_TRUE(connection);
        EXPECT_NE(*connection, 0U);
        service.close(*connection);
    }
}

TYPED_TEST_P(SMCServiceContract, ReadsAKeyInTwoSteps) {
    SMCService& service = this->subject.port();
    const auto connection = service.open().value();
    SMCRecord information{};
    SMCRecord value{};

    ASSERT_TRUE(
        service.callStructMethod(connection, this->request("FNum", smc::readInformationCommand), information));
    const auto size = smc::read32(information, smc::sizeOffset);
    EXPECT_EQ(smc::read32(information, smc::typeOffset), smc::code("ui8 "));
    EXPECT_EQ(size, 1U);
    ASSERT_TRUE(service.callStructMethod(connection, this->request("FNum", smc::readBytesCommand, size), value));
    EXPECT_EQ(value[smc::bytesOffset], 2);
    service.close(connection);
}

TYPED_TEST_P(SMCServiceContract, HasNoTypeForAnUnknownKey) {
    SMCService& service = this->subject.port();
    const auto connection = service.open().value();
    SMCRecord output{};

    const bool succeeds =
        service.callStructMethod(connection, this->request("F9Ac", smc::readInformationCommand), output);

    EXPECT_TRUE(!succeeds || smc::read32(output, smc::typeOffset) == 0);
    service.close(connection);
}

TYPED_TEST_P(SMCServiceContract, RejectsCommandsThatWrite) {
    SMCService& service = this->subject.port();
    const auto connection = service.open().value();
    SMCRecord output{};

    for (const std::uint8_t command : {0, 1, 6, 8, 255}) {
        EXPECT_FALSE(service.callStructMethod(connection, this->request("F0Tg", command, 4), output)) << +command;
    }
    service.close(connection);
}

TYPED_TEST_P(SMCServiceContract, RejectsUnknownConnections) {
    SMCService& service = this->subject.port();
    SMCRecord output{};

    EXPECT_FALSE(service.callStructMethod(4711, this->request("FNum", smc::readInformationCommand), output));
}

TYPED_TEST_P(SMCServiceContract, CannotBeOpenedWithoutAController) {
    this->subject.removeController();

    EXPECT_FALSE(this->subject.port().open());
}

REGISTER_TYPED_TEST_SUITE_P(SMCServiceContract, OpensConnectionsAgainAndAgain, ReadsAKeyInTwoSteps,
                            HasNoTypeForAnUnknownKey, RejectsCommandsThatWrite, RejectsUnknownConnections,
                            CannotBeOpenedWithoutAController);

}  // namespace kestro
