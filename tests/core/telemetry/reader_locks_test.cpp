#include "core/telemetry/cpu_reader.h"
#include "core/telemetry/network_reader.h"
#include "core/telemetry/smc_reader.h"
#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <latch>
#include <thread>

namespace kestro {
namespace {

/// Counts the threads between two points and records the maximum.
class OverlapGauge {
public:
    void enter() {
        const int depth = ++inside_;
        int deepest = deepest_;
        while (depth > deepest && !deepest_.compare_exchange_weak(deepest, depth)) {
        }
        // Gives another thread the chance to enter.
        std::this_thread::yield();
    }
    void leave() {
        std::this_thread::yield();
        --inside_;
    }
    int deepest() const { return deepest_; }

private:
    std::atomic<int> inside_ = 0;
    std::atomic<int> deepest_ = 0;
};

/// One core with constant ticks; measures from requesting an array to releasing the previous one.
class GaugedMachHost final : public MachHost {
public:
    std::optional<ProcessorLoadInfo> hostProcessorInfo() override {
        gauge.enter();
        const bool isFirst = !hasAnswered_.exchange(true);
        if (isFirst) {
            gauge.leave();  // there is no previous array to release
        }
        return ProcessorLoadInfo{1, ticks_};
    }
    void vmDeallocate(std::int32_t*, std::size_t) override { gauge.leave(); }
    std::optional<VirtualMemoryStatistics> hostStatistics64() override { return std::nullopt; }
    std::optional<std::size_t> hostPageSize() override { return std::nullopt; }

    OverlapGauge gauge;

private:
    std::atomic<bool> hasAnswered_ = false;
    std::array<std::int32_t, 4> ticks_{};
};

/// Returns one byte for every key, on a connection that opens slowly and only at the second attempt; measures from
/// a key's information to its bytes.
class GaugedSMCService final : public SMCService {
public:
    std::optional<std::uint32_t> open() override {
        const bool isFirst = ++attempts == 1;
        for (int pause = 0; pause < 1000; ++pause) {
            std::this_thread::yield();
        }
        return isFirst ? std::nullopt : std::optional(1U);
    }
    bool callStructMethod(std::uint32_t, const SMCRecord& input, SMCRecord& output) override {
        if (input[smc::commandOffset] == smc::readInformationCommand) {
            gauge.enter();
            smc::write32(output, smc::typeOffset, smc::code("ui8 "));
            smc::write32(output, smc::sizeOffset, 1);
        } else {
            output[smc::bytesOffset] = 7;
            gauge.leave();
        }
        return true;
    }
    void close(std::uint32_t) override {}

    OverlapGauge gauge;
    std::atomic<int> attempts = 0;
};

/// One interface without traffic, and a clock; measures from the list to the timestamp of the reading.
class GaugedNetwork final : public NetworkInterfaces, public Clock {
public:
    std::optional<std::span<const InterfaceEntry>> getifaddrs() override {
        gauge.enter();
        hasListed_ = true;
        return entries_;
    }
    std::optional<std::string> getnameinfo(const InterfaceAddress&) override { return std::nullopt; }
    WallTime wallNow() const override { return {}; }
    MonotonicTime monotonicNow() const override {
        if (hasListed_) {  // a reader queries the clock once before its first list
            gauge.leave();
        }
        return {};
    }

    mutable OverlapGauge gauge;

private:
    const std::vector<InterfaceEntry> entries_{SimulatedNetworkInterfaces::link("eth0", 1000, 1000)};
    std::atomic<bool> hasListed_ = false;
};

/// Makes calls from several threads that start simultaneously.
template <typename Call>
void callFromManyThreads(Call call) {
    std::array<std::thread, 4> threads;
    std::latch start(std::ssize(threads));
    for (auto& thread : threads) {
        thread = std::thread([&] {
            start.arrive_and_wait();
            for (int repetition = 0; repetition < 300; ++repetition) {
                call();
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

TEST(ReaderLocks, CallsToTheCPUReaderNeverInterleave) {
    SimulatedMac mac;
    GaugedMachHost host;
    CPUReader reader(host, mac.systemControl);

    callFromManyThreads([&] { reader.readCPU(); });

    EXPECT_EQ(host.gauge.deepest(), 1);
}

TEST(ReaderLocks, CallsToTheSMCReaderNeverInterleave) {
    GaugedSMCService service;
    SMCReader reader(service);

    callFromManyThreads([&] { EXPECT_EQ(reader.readValue("F1Ac"), 7); });

    EXPECT_EQ(service.gauge.deepest(), 1);
    EXPECT_EQ(service.attempts, 2) << "one at construction, one for all calls";
}

TEST(ReaderLocks, CallsToTheNetworkReaderNeverInterleave) {
    GaugedNetwork network;
    NetworkReader reader(network, network);

    callFromManyThreads([&] { EXPECT_EQ(reader.read().downloadBytesPerSec, 0); });

    EXPECT_EQ(network.gauge.deepest(), 1);
}

}  // namespace
}  // namespace kestro
