#include "core/telemetry/smc_reader.h"

#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestro {
namespace {

class SMCReaderTest : public testing::Test {
protected:
    SMCReaderTest() { mac.freeze(); }

    std::vector<FanTelemetry> readFans() { return SMCReader(mac.smc).readFans(); }
    std::optional<double> readValue(std::string_view key) { return SMCReader(mac.smc).readValue(key); }

    SimulatedMac mac;
};

TEST_F(SMCReaderTest, DecodesEverySupportedType) {
    mac.smc.setUi8("TST1", 0xF3);
    mac.smc.setUi16("TST2", 0x1234);
    mac.smc.setFloat("TST3", 1234.5F);
    mac.smc.setRaw("TST4", "fpe2", std::vector<std::uint8_t>{0x16, 0x33});
    mac.smc.setRaw("TST5", "sp78", std::vector<std::uint8_t>{0x2D, 0x80});

    EXPECT_EQ(readValue("TST1"), 243);
    EXPECT_EQ(readValue("TST2"), 4660);
    EXPECT_EQ(readValue("TST3"), 1234.5);
    EXPECT_EQ(readValue("TST4"), 0x1633 >> 2);
    EXPECT_EQ(readValue("TST5"), 45.5);
    EXPECT_EQ(mac.smc.malformedRecords(), 0);
}

TEST_F(SMCReaderTest, TruncatesAFixedPointSpeed) {
    mac.smc.setFpe2("TST1", 1420.75);

    EXPECT_EQ(readValue("TST1"), 1420);
}

TEST_F(SMCReaderTest, TreatsAFixedPointTemperatureAsUnsigned) {
    mac.smc.setRaw("TST1", "sp78", std::vector<std::uint8_t>{0xFF, 0x80});

    EXPECT_EQ(readValue("TST1"), 255.5);
}

TEST_F(SMCReaderTest, HasNoValueForAnUnknownType) {
    const std::vector<std::uint8_t> bytes{1, 2, 3, 4};
    mac.smc.setRaw("TST1", "ui32", bytes);
    mac.smc.setRaw("TST2", "ui8_", bytes);
    mac.smc.setRaw("TST3", "FLT ", bytes);

    EXPECT_FALSE(readValue("TST1"));
    EXPECT_FALSE(readValue("TST2"));
    EXPECT_FALSE(readValue("TST3"));
}

TEST_F(SMCReaderTest, HasNoValueForANonFiniteFloat) {
    mac.smc.setFloat("TST1", std::numeric_limits<float>::quiet_NaN());
    mac.smc.setFloat("TST2", std::numeric_limits<float>::infinity());

    EXPECT_FALSE(readValue("TST1"));
    EXPECT_FALSE(readValue("TST2"));
}

TEST_F(SMCReaderTest, HasNoValueForAMissingKeyHoweverItIsReported) {
    EXPECT_FALSE(readValue("TST1"));
    mac.smc.answersMissingKeys = true;
    EXPECT_FALSE(readValue("TST1"));
}

TEST_F(SMCReaderTest, HasNoValueWhenEitherCallFails) {
    SMCReader reader(mac.smc);

    mac.smc.informationFailure.times(1);
    EXPECT_FALSE(reader.readValue("F0Ac"));
    EXPECT_EQ(mac.smc.bytesCalls(), 0);
    mac.smc.bytesFailure.times(1);
    EXPECT_FALSE(reader.readValue("F0Ac"));
    EXPECT_EQ(reader.readValue("F0Ac"), 1420);
}

TEST_F(SMCReaderTest, OpensTheConnectionOnceAndClosesItOnDestruction) {
    {
        SMCReader reader(mac.smc);
        reader.readFans();
        reader.readFans();

        EXPECT_EQ(mac.smc.opened(), 1);
        EXPECT_EQ(mac.smc.openConnections(), 1);
    }

    EXPECT_EQ(mac.smc.openConnections(), 0);
}

TEST_F(SMCReaderTest, RetriesOpeningAtEveryReadingUntilItSucceeds) {
    mac.smc.openFailure.times(3);
    SMCReader reader(mac.smc);

    EXPECT_FALSE(reader.readValue("F0Ac"));
    EXPECT_TRUE(reader.readFans().empty());
    EXPECT_EQ(mac.smc.opened(), 3);
    EXPECT_EQ(reader.readFans().size(), 2u);
    EXPECT_EQ(mac.smc.opened(), 4);
}

TEST_F(SMCReaderTest, ClosesNothingThatWasNeverOpen) {
    mac.smc.openFailure.always();
    { const SMCReader reader(mac.smc); }

    EXPECT_EQ(mac.smc.openConnections(), 0);
}

TEST_F(SMCReaderTest, ListsTwoFansAsLeftAndRight) {
    const auto fans = readFans();

    ASSERT_EQ(fans.size(), 2u);
    EXPECT_EQ(fans[0], (FanTelemetry{0, "Left Fan", 1420, 1420, 1200, 7300}));
    EXPECT_EQ(fans[1], (FanTelemetry{1, "Right Fan", 1460, 1460, 1200, 7800}));
}

TEST_F(SMCReaderTest, NumbersFansUnlessThereAreTwo) {
    mac.smc.setFans(std::vector<float>{1000});
    EXPECT_EQ(readFans().at(0).name, "Fan #1");

    mac.smc.setFans(std::vector<float>{1000, 1100, 1200});
    const auto fans = readFans();
    ASSERT_EQ(fans.size(), 3u);
    EXPECT_EQ(fans[0].name, "Fan #1");
    EXPECT_EQ(fans[1].name, "Fan #2");
    EXPECT_EQ(fans[2].name, "Fan #3");
    EXPECT_EQ(fans[2].currentRPM, 1200);
}

TEST_F(SMCReaderTest, ReadsWhatTheMachineCallsItsFans) {
    const std::vector<std::uint8_t> record{0, 1, 2, 3, 'L', 'e', 'f', 't', ' ', 's', 'i', 'd', 'e', ' ', ' ', 0};
    mac.smc.setRaw("F0ID", "{fds", record);
    mac.smc.setRaw("F1ID", "ch8*", std::vector<std::uint8_t>{'F', 'a', 'n', ' ', '2', 0, 0, 0});
    SMCReader reader(mac.smc);
    auto fans = reader.readFans();

    reader.readLabels(fans);

    EXPECT_EQ(fans.at(0).label, "Left side");
    EXPECT_EQ(fans.at(1).label, "Fan 2");
    mac.smc.remove("F0ID");
    mac.smc.setUi8("F1ID", 'x');
    reader.readLabels(fans);
    EXPECT_EQ(fans.at(0).label, "");
    EXPECT_EQ(fans.at(1).label, "");
}

TEST_F(SMCReaderTest, QueriesNoFanWhenTheCountIsZero) {
    mac.smc.setUi8("FNum", 0);

    EXPECT_TRUE(readFans().empty());
    EXPECT_EQ(mac.smc.informationCalls(), 1);
}

TEST_F(SMCReaderTest, TruncatesTheCount) {
    mac.smc.setFloat("FNum", 0.9F);
    EXPECT_TRUE(readFans().empty());

    mac.smc.setFloat("FNum", 1.9F);
    EXPECT_EQ(readFans().size(), 1u);
}

TEST_F(SMCReaderTest, ClampsAnImplausibleCount) {
    mac.smc.setFloat("FNum", 3e38F);
    EXPECT_LE(readFans().size(), 255u);

    mac.smc.setFloat("FNum", -7);
    EXPECT_TRUE(readFans().empty());
    mac.smc.setFloat("FNum", std::numeric_limits<float>::quiet_NaN());
    EXPECT_TRUE(readFans().empty());
}

TEST_F(SMCReaderTest, ListsNoFansWhenTheCountIsMissing) {
    mac.smc.remove("FNum");

    EXPECT_TRUE(readFans().empty());
}

TEST_F(SMCReaderTest, ReplacesEachMissingKeyIndividually) {
    mac.smc.remove("F0Tg");
    mac.smc.remove("F1Mn");
    mac.smc.remove("F1Mx");

    const auto fans = readFans();

    EXPECT_EQ(fans.at(0), (FanTelemetry{0, "Left Fan", 1420, 1420, 1200, 7300}));
    EXPECT_EQ(fans.at(1), (FanTelemetry{1, "Right Fan", 1460, 1460, 1200, 7800}));
}

TEST_F(SMCReaderTest, UsesTheCurrentSpeedForAMissingTarget) {
    mac.smc.setFloat("F0Ac", 2222);
    mac.smc.setFloat("F0Tg", 3333);
    EXPECT_EQ(readFans().at(0).targetRPM, 3333);

    mac.smc.remove("F0Tg");
    EXPECT_EQ(readFans().at(0).targetRPM, 2222);
}

TEST_F(SMCReaderTest, ListsAFanWhoseSpeedCannotBeDecoded) {
    mac.smc.setRaw("F0Ac", "abcd", std::vector<std::uint8_t>{9, 9});
    mac.smc.remove("F0Tg");

    const auto fans = readFans();

    ASSERT_EQ(fans.size(), 2u);
    EXPECT_EQ(fans[0], (FanTelemetry{0, "Left Fan", 0, 0, 1200, 7300}));
}

TEST_F(SMCReaderTest, FillsAnExistingListLikeANewOne) {
    SMCReader reader(mac.smc);
    std::vector<FanTelemetry> fans(5, FanTelemetry{9, "left over", 1, 2, 3, 4});

    reader.readFans(fans);
    EXPECT_EQ(fans, reader.readFans());
    mac.smc.setFans(std::vector<float>{900});
    reader.readFans(fans);
    EXPECT_EQ(fans, (std::vector{FanTelemetry{0, "Fan #1", 900, 900, 1200, 7300}}));
    mac.smc.remove("FNum");
    reader.readFans(fans);

    EXPECT_TRUE(fans.empty());
}

}  // namespace
}  // namespace kestro
