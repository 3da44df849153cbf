#pragma once

#include "core/telemetry/cpu_reader.h"
#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace kestro::test {

/// A machine whose core ticks change only when a test adds some.
class CPUReaderTest : public testing::Test {
protected:
    CPUReaderTest() {
        mac.freeze();
        useCores(4);
        mac.systemControl.integers["hw.perflevel0.physicalcpu"] = 2;
        mac.systemControl.integers["hw.perflevel1.physicalcpu"] = 2;
    }

    void useCores(std::size_t count) { mac.machHost.cores.assign(count, {1000, 1000, 1000, 1000}); }

    /// Makes the host give each core's number, all of them online.
    void identifyCores() {
        mac.machHost.identities.clear();
        for (std::uint32_t number = 0; number < mac.machHost.cores.size(); ++number) {
            mac.machHost.identities.push_back({number, true});
        }
    }

    void addToEveryCore(const SimulatedCoreTicks& ticks) {
        for (std::size_t core = 0; core < mac.machHost.cores.size(); ++core) {
            mac.machHost.addTicks(core, ticks);
        }
    }

    CPUReader& reader() {
        if (!reader_) {
            reader_.emplace(mac.machHost, mac.systemControl);
        }
        return *reader_;
    }

    SimulatedMac mac;

private:
    std::optional<CPUReader> reader_;
};

}  // namespace kestro::test
