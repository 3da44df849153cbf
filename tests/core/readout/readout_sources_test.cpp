#include "core/readout/readout_sources.h"

#include <gtest/gtest.h>

#include <array>

namespace kestro {
namespace {

TEST(ReadoutSources, AreThoseOfTheModules) {
    using enum MenubarModuleType;

    EXPECT_EQ(readoutSources(std::array{appIcon, memory, fanSpeed}),
              (TelemetrySources{TelemetrySource::memory, TelemetrySource::fans}));
    EXPECT_EQ(readoutSources(std::array{cpuUsage}), TelemetrySources{TelemetrySource::cpu});
    EXPECT_EQ(readoutSources(std::array{cpuClusters}), TelemetrySources{TelemetrySource::cpu});
    EXPECT_EQ(readoutSources(std::array{thermal}), TelemetrySources{TelemetrySource::thermals});
    EXPECT_EQ(readoutSources(std::array{network}), TelemetrySources{TelemetrySource::network});
    EXPECT_EQ(readoutSources(std::array{battery}), TelemetrySources{TelemetrySource::power});
    EXPECT_EQ(readoutSources(std::array{diskSpace}), TelemetrySources{TelemetrySource::disk});
}

TEST(ReadoutSources, AreNoneForWhatNoReaderGives) {
    using enum MenubarModuleType;

    EXPECT_EQ(readoutSources(std::array{fanProfile, powerMode, keepAwake}), TelemetrySources());
    EXPECT_EQ(readoutSources({}), TelemetrySources());
}

}  // namespace
}  // namespace kestro
