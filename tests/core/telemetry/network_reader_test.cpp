#include "core/telemetry/network_reader.h"

#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using Interfaces = SimulatedNetworkInterfaces;

class NetworkReaderTest : public testing::Test {
protected:
    NetworkReaderTest() { mac.freeze(); }

    void list(std::vector<InterfaceEntry> entries) { mac.networkInterfaces.entries = std::move(entries); }

    NetworkTelemetry readAfter(std::chrono::nanoseconds duration) {
        mac.advance(duration);
        return reader.read();
    }

    SimulatedMac mac;
    NetworkReader reader{mac.networkInterfaces, mac.clock};
};

TEST_F(NetworkReaderTest, ReportsNoThroughputOnTheFirstCall) {
    list({Interfaces::link("en0", 5000, 3000)});

    const NetworkTelemetry record = readAfter(1s);

    EXPECT_EQ(record.downloadBytesPerSec, 0);
    EXPECT_EQ(record.uploadBytesPerSec, 0);
}

TEST_F(NetworkReaderTest, MeasuresTheRatesBetweenTwoCalls) {
    list({Interfaces::link("en0", 5000, 3000)});
    reader.read();
    list({Interfaces::link("en0", 9000, 3500)});

    const NetworkTelemetry record = readAfter(2s);

    EXPECT_DOUBLE_EQ(record.downloadBytesPerSec, 2000);
    EXPECT_DOUBLE_EQ(record.uploadBytesPerSec, 250);
}

TEST_F(NetworkReaderTest, AddsUpEveryActiveInterface) {
    list({Interfaces::link("en0", 1000, 1000), Interfaces::link("en1", 1000, 1000)});
    reader.read();
    list({Interfaces::link("en0", 2000, 2000), Interfaces::link("en1", 2000, 2000)});

    const NetworkTelemetry record = readAfter(1s);

    EXPECT_DOUBLE_EQ(record.downloadBytesPerSec, 2000);
    EXPECT_DOUBLE_EQ(record.uploadBytesPerSec, 2000);
}

TEST_F(NetworkReaderTest, SupportsMoreThanThirtyTwoBits) {
    list({Interfaces::link("en0", 0xFFFFFFFF, 1)});
    reader.read();
    list({Interfaces::link("en0", 0xFFFFFFFFull + 500, 1)});

    EXPECT_DOUBLE_EQ(readAfter(1s).downloadBytesPerSec, 500);
}

TEST_F(NetworkReaderTest, ACounterThatWentBackwardsYieldsZeroForOneInterval) {
    list({Interfaces::link("en0", 9000, 9000)});
    reader.read();
    list({Interfaces::link("en0", 100, 9100)});
    const NetworkTelemetry wrapped = readAfter(1s);
    list({Interfaces::link("en0", 400, 9100)});
    const NetworkTelemetry next = readAfter(1s);

    EXPECT_EQ(wrapped.downloadBytesPerSec, 0);
    EXPECT_DOUBLE_EQ(wrapped.uploadBytesPerSec, 100);
    EXPECT_DOUBLE_EQ(next.downloadBytesPerSec, 300);
    EXPECT_EQ(next.uploadBytesPerSec, 0);
}

TEST_F(NetworkReaderTest, ACounterThatWasZeroYieldsNoRate) {
    list({Interfaces::link("en0", 0, 10)});
    reader.read();
    list({Interfaces::link("en0", 7000, 20)});

    const NetworkTelemetry record = readAfter(1s);

    EXPECT_EQ(record.downloadBytesPerSec, 0);
    EXPECT_DOUBLE_EQ(record.uploadBytesPerSec, 10);
}

TEST_F(NetworkReaderTest, TwoCallsAtTheSameInstantYieldNoRate) {
    list({Interfaces::link("en0", 1000, 1000)});
    reader.read();
    list({Interfaces::link("en0", 2000, 2000)});

    const NetworkTelemetry record = readAfter(0s);

    EXPECT_EQ(record.downloadBytesPerSec, 0);
    EXPECT_EQ(record.uploadBytesPerSec, 0);
}

TEST_F(NetworkReaderTest, AFailedCallPreservesTheCountersAndTheTime) {
    list({Interfaces::link("en3", 1000, 1000), Interfaces::ipv4("en3", {10, 0, 0, 2})});
    reader.read();
    mac.networkInterfaces.interfacesFailure.times(1);

    const NetworkTelemetry failed = readAfter(1s);
    list({Interfaces::link("en3", 5000, 1000)});
    const NetworkTelemetry next = readAfter(1s);

    EXPECT_EQ(failed, (NetworkTelemetry{0, 0, "en0", "--"}));
    EXPECT_DOUBLE_EQ(next.downloadBytesPerSec, 2000);
}

TEST_F(NetworkReaderTest, TreatsAnEmptyListAsAFailedCall) {
    list({Interfaces::link("en0", 1000, 1000)});
    reader.read();
    list({});
    const NetworkTelemetry empty = readAfter(1s);
    list({Interfaces::link("en0", 1600, 1000)});

    EXPECT_EQ(empty, (NetworkTelemetry{0, 0, "en0", "--"}));
    EXPECT_DOUBLE_EQ(readAfter(1s).downloadBytesPerSec, 300);
}

TEST_F(NetworkReaderTest, IgnoresALoneLoopback) {
    const std::uint32_t loopback = interfaceUp | interfaceRunning | interfaceLoopback;
    list({Interfaces::link("lo0", 1000, 1000, loopback), Interfaces::ipv4("lo0", {127, 0, 0, 1}, loopback)});
    reader.read();
    list({Interfaces::link("lo0", 2000, 2000, loopback), Interfaces::ipv4("lo0", {10, 0, 0, 1}, loopback)});

    EXPECT_EQ(readAfter(1s), (NetworkTelemetry{0, 0, "en0", "--"}));
}

TEST_F(NetworkReaderTest, ConsidersOnlyInterfacesThatAreUpAndRunning) {
    list({Interfaces::link("en0", 1000, 1000), Interfaces::link("en5", 9, 9, interfaceUp),
          Interfaces::link("en6", 9, 9, interfaceRunning), Interfaces::ipv4("en5", {10, 0, 0, 5}, interfaceUp)});
    reader.read();
    list({Interfaces::link("en0", 1100, 1000), Interfaces::link("en5", 9999, 9, interfaceUp),
          Interfaces::link("en6", 9999, 9, interfaceRunning),
          Interfaces::ipv4("en5", {10, 0, 0, 5}, interfaceUp)});

    const NetworkTelemetry record = readAfter(1s);

    EXPECT_DOUBLE_EQ(record.downloadBytesPerSec, 100);
    EXPECT_EQ(record.localIP, "--");
}

TEST_F(NetworkReaderTest, IgnoresOtherFlags) {
    list({Interfaces::ipv4("en7", {10, 0, 0, 7}, interfaceUp | interfaceRunning | 0x8802)});

    EXPECT_EQ(reader.read().localIP, "10.0.0.7");
}

TEST_F(NetworkReaderTest, IgnoresALoopbackAddressOnAnotherInterface) {
    list({Interfaces::ipv4("en4", {127, 0, 0, 2})});

    EXPECT_EQ(reader.read(), (NetworkTelemetry{0, 0, "en0", "--"}));
}

TEST_F(NetworkReaderTest, TheFirstAddressWins) {
    list({Interfaces::ipv4("en4", {10, 0, 0, 4}), Interfaces::ipv4("en5", {10, 0, 0, 5})});

    EXPECT_EQ(reader.read(), (NetworkTelemetry{0, 0, "en4", "10.0.0.4"}));
}

TEST_F(NetworkReaderTest, SkipsAnAddressThatCannotBeFormatted) {
    list({Interfaces::ipv4("en4", {10, 0, 0, 4}), Interfaces::ipv4("en5", {10, 0, 0, 5})});
    mac.networkInterfaces.nameInfoFailure.times(1);

    EXPECT_EQ(reader.read(), (NetworkTelemetry{0, 0, "en5", "10.0.0.5"}));
}

TEST_F(NetworkReaderTest, ALaterInterfaceReplacesTheNameSetFromAnAddress) {
    list(
        {Interfaces::link("en0", 1, 1), Interfaces::ipv4("en0", {192, 168, 1, 5}), Interfaces::link("en1", 1, 1)});

    const NetworkTelemetry record = reader.read();

    EXPECT_EQ(record.localIP, "192.168.1.5");
    EXPECT_EQ(record.primaryInterface, "en1");
}

TEST_F(NetworkReaderTest, ALaterInterfaceKeepsAnyOtherName) {
    list({Interfaces::link("en1", 1, 1), Interfaces::ipv4("en1", {10, 0, 0, 2}), Interfaces::link("en0", 1, 1)});

    const NetworkTelemetry record = reader.read();

    EXPECT_EQ(record.localIP, "10.0.0.2");
    EXPECT_EQ(record.primaryInterface, "en1");
}

TEST_F(NetworkReaderTest, IgnoresEntriesWithoutAddressWithoutCountersAndOfOtherFamilies) {
    InterfaceEntry noAddress = Interfaces::link("en2", 500, 500);
    noAddress.address.reset();
    InterfaceEntry noCounters = Interfaces::link("en3", 0, 0);
    noCounters.statistics.reset();
    InterfaceEntry other = Interfaces::link("en4", 500, 500);
    other.address->family = AddressFamily::other;
    list({noAddress, noCounters, other, Interfaces::link("en0", 1, 1)});
    reader.read();
    noAddress.statistics->receivedBytes = 900;
    other.statistics->receivedBytes = 900;
    list({noAddress, noCounters, other, Interfaces::link("en0", 2, 1)});

    const NetworkTelemetry record = readAfter(1s);

    EXPECT_DOUBLE_EQ(record.downloadBytesPerSec, 1);
    EXPECT_EQ(record.primaryInterface, "en0");
}

}  // namespace
}  // namespace kestro
