#include "core/telemetry/cpu_reader.h"
#include "core/telemetry/network_reader.h"
#include "core/telemetry/smc_reader.h"
#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

namespace kestro {
namespace {

/// Calls from several threads at once; the simulated ports, which lock nothing, show every overlap to the
/// thread sanitizer and most of them in their books.
template <typename Call>
void callFromManyThreads(Call call) {
    std::array<std::thread, 4> threads;
    for (auto& thread : threads) {
        thread = std::thread([&call] {
            for (int repetition = 0; repetition < 300; ++repetition) {
                call();
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

TEST(ReaderLocks, CallsOfTheProcessorReaderNeverInterleave) {
    SimulatedMac mac;
    CPUReader reader(mac.machHost, mac.systemControl);

    callFromManyThreads([&] { reader.readCPU(); });

    EXPECT_EQ(mac.machHost.processorInfoCalls(), 1200);
    EXPECT_EQ(mac.machHost.outstandingArrays(), 1);
    EXPECT_EQ(mac.machHost.wrongDeallocations(), 0);
}

TEST(ReaderLocks, CallsOfTheControllersReaderNeverInterleave) {
    SimulatedMac mac;
    mac.freeze();
    mac.smc.openFailure.times(1);
    SMCReader reader(mac.smc);

    callFromManyThreads([&] { EXPECT_EQ(reader.readValue("F1Ac"), 1460); });

    EXPECT_EQ(mac.smc.openConnections(), 1);
    EXPECT_EQ(mac.smc.bytesCalls(), 1200);
    EXPECT_EQ(mac.smc.malformedRecords(), 0);
}

TEST(ReaderLocks, CallsOfTheNetworkReaderNeverInterleave) {
    SimulatedMac mac;
    NetworkReader reader(mac.networkInterfaces, mac.clock);

    callFromManyThreads([&] { EXPECT_EQ(reader.read().downloadBytesPerSec, 0); });
}

}  // namespace
}  // namespace kestro
