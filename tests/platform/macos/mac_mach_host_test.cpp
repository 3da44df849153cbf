#include "platform/macos/mac_mach_host.h"

#include "core/telemetry/cpu_reader.h"
#include "platform/macos/mac_system_control.h"
#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

using fakes::FakeMac;
using testing::ElementsAre;

TEST(MacMachHost, PassesTheKernelsTicksOn) {
    FakeMac mac;
    mac.kernel.ticks = {{1, 2, 3, 4}, {5, 6, 7, 0xFFFFFFFF}};
    MacMachHost host;

    const auto load = host.hostProcessorInfo();

    ASSERT_TRUE(load);
    EXPECT_EQ(load->processorCount, 2U);
    EXPECT_THAT(load->info, ElementsAre(1, 2, 3, 4, 5, 6, 7, -1));
    host.vmDeallocate(load->info.data(), load->info.size() * sizeof(std::int32_t));
    EXPECT_TRUE(mac.kernel.arrays.empty());
}

TEST(MacMachHost, HasNoLoadWithoutAnArray) {
    FakeMac mac;
    mac.kernel.ticks.resize(2);
    mac.kernel.answersWithoutArray = true;
    MacMachHost host;

    const auto load = host.hostProcessorInfo();

    ASSERT_TRUE(load);
    EXPECT_EQ(load->info.data(), nullptr);
    host.vmDeallocate(load->info.data(), 0);
    EXPECT_TRUE(mac.misuse().empty());
}

TEST(MacMachHost, ReadsThePageCounts) {
    FakeMac mac;
    mac.kernel.statistics.free_count = 10;
    mac.kernel.statistics.active_count = 20;
    mac.kernel.statistics.inactive_count = 30;
    mac.kernel.statistics.wire_count = 40;
    mac.kernel.statistics.compressor_page_count = 50;
    MacMachHost host;

    const auto statistics = host.hostStatistics64();

    ASSERT_TRUE(statistics);
    EXPECT_EQ(statistics->freeCount, 10U);
    EXPECT_EQ(statistics->activeCount, 20U);
    EXPECT_EQ(statistics->inactiveCount, 30U);
    EXPECT_EQ(statistics->wireCount, 40U);
    EXPECT_EQ(statistics->compressorPageCount, 50U);
    EXPECT_EQ(host.hostPageSize(), 16384U);
}

TEST(MacMachHost, RejectsStatisticsOfAKernelWithoutCompressor) {
    FakeMac mac;
    mac.kernel.statisticsLength = 24;
    MacMachHost host;

    EXPECT_FALSE(host.hostStatistics64());

    mac.kernel.statisticsLength = 33;
    EXPECT_TRUE(host.hostStatistics64());
}

TEST(MacMachHost, HoldsOneReferenceToTheHostPort) {
    FakeMac mac;
    {
        MacMachHost host;
        host.hostStatistics64();
        host.hostPageSize();
        EXPECT_EQ(mac.kernel.sendRights.begin()->second, 1);
    }
    EXPECT_TRUE(mac.kernel.sendRights.empty());
}

TEST(MacMachHost, HoldsNothingWhenCallsFail) {
    useWithFailingCalls([](FakeMac& mac) { mac.kernel.ticks.resize(12); },
                        [](FakeMac&) {
                            MacMachHost host;
                            if (const auto load = host.hostProcessorInfo()) {
                                host.vmDeallocate(load->info.data(), load->info.size() * sizeof(std::int32_t));
                            }
                            host.hostStatistics64();
                            host.hostPageSize();
                        });
}

TEST(MacMachHost, GivesTheReaderOneArrayAtATime) {
    FakeMac mac;
    mac.kernel.ticks.resize(4);
    MacMachHost host;
    MacSystemControl system;
    CPUReader reader(host, system);

    for (std::uint32_t round = 0; round < 1000; ++round) {
        mac.kernel.ticks[0][CPU_STATE_USER] += 100;
        mac.kernel.ticks[1][CPU_STATE_IDLE] += 100;
        reader.readCPU();
        EXPECT_EQ(mac.kernel.arrays.size(), 1U);
    }

    EXPECT_EQ(reader.readCPU().coreCount, 4);
    EXPECT_TRUE(mac.misuse().empty());
}

}  // namespace
}  // namespace kestro
