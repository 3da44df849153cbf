#include "core/readout/readout_composer.h"

#include "tests/support/allocation_counter.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace kestro {
namespace {

using Module = MenubarModuleType;

/// A machine with 42 % of memory in use and one fan at 1420 rpm.
struct Fixture {
    MemoryTelemetry memory;
    PowerTelemetry power;
    std::vector<FanTelemetry> fans{{0, "Fan #1", 1420, 1400, 1200, 7300}};
    std::vector<Module> modules{Module::appIcon, Module::memory, Module::fanSpeed};
    MenubarDelimiter delimiter = MenubarDelimiter::middleDot;
    MenubarIconStyle style = MenubarIconStyle::iconsAndText;
    bool showLabels = true;
    ReadoutComposer composer;

    Fixture() {
        memory.totalBytes = 100;
        memory.usedBytes = 42;
    }

    ReadoutLayout layout() const { return {modules, delimiter, style}; }
    ReadoutInputs inputs() const {
        ReadoutInputs inputs;
        inputs.memory = &memory;
        inputs.power = &power;
        inputs.fans = fans;
        inputs.showLabels = showLabels;
        return inputs;
    }
    bool compose() { return composer.compose(layout(), inputs()); }

    /// Whether the cached readouts equal a composition from scratch.
    bool isRight() const {
        return composer.readout() == composeReadout(layout(), inputs()) &&
               composer.widest() == widestReadout(layout(), WidestTextInputs::of(inputs()));
    }
};

TEST(ReadoutComposer, ReportsAChangeOnTheFirstCompositionOnly) {
    Fixture f;

    EXPECT_TRUE(f.compose());
    EXPECT_EQ(f.composer.readout().title, " RAM 42% · 1420 RPM");
    EXPECT_EQ(f.composer.widest().title, " RAM 100% · 9999 RPM");
    EXPECT_FALSE(f.compose());
    EXPECT_TRUE(f.isRight());
}

TEST(ReadoutComposer, ReportsOnlyReadingsThatChangeTheReadout) {
    Fixture f;
    f.compose();

    f.fans[0].currentRPM = 1420.7;
    EXPECT_FALSE(f.compose());
    f.fans[0].currentRPM = 1421;
    EXPECT_TRUE(f.compose());

    EXPECT_EQ(f.composer.readout().title, " RAM 42% · 1421 RPM");
}

TEST(ReadoutComposer, ReactsToEveryPartOfTheLayout) {
    Fixture f;
    f.compose();

    f.modules.push_back(Module::battery);
    EXPECT_TRUE(f.compose());
    EXPECT_TRUE(f.isRight());
    f.delimiter = MenubarDelimiter::pipe;
    EXPECT_TRUE(f.compose());
    EXPECT_TRUE(f.isRight());
    f.style = MenubarIconStyle::textOnly;
    EXPECT_TRUE(f.compose());
    EXPECT_TRUE(f.isRight());
    f.showLabels = false;
    EXPECT_TRUE(f.compose());
    EXPECT_TRUE(f.isRight());
    std::swap(f.modules[1], f.modules[2]);
    EXPECT_TRUE(f.compose());

    EXPECT_TRUE(f.isRight());
}

TEST(ReadoutComposer, ReportsAChangeOfOnlyTheWidestReadout) {
    Fixture f;
    f.compose();

    f.fans[0].maxRPM = 12000;

    EXPECT_TRUE(f.compose());
    EXPECT_EQ(f.composer.readout().title, " RAM 42% · 1420 RPM");
    EXPECT_EQ(f.composer.widest().title, " RAM 100% · 99999 RPM");
}

TEST(ReadoutComposer, ReactsToTheMachine) {
    Fixture f;
    f.modules.push_back(Module::battery);
    f.compose();

    f.power.hasBattery = true;
    EXPECT_TRUE(f.compose());
    EXPECT_TRUE(f.isRight());
    f.fans.push_back({1, "Right Fan", 1460, 1400, 1200, 18000});
    EXPECT_TRUE(f.compose());

    EXPECT_EQ(f.composer.widest().title, " RAM 100% · L:9999 R:99999 · ⚡100%");
    EXPECT_TRUE(f.isRight());
}

TEST(ReadoutComposer, AllocatesNothingInSteadyState) {
    Fixture f;
    f.compose();
    f.compose();
    const auto before = test::allocationsOfThisThread();

    bool isEveryOneNew = true;
    for (int percent = 50; percent < 90; ++percent) {
        f.memory.usedBytes = static_cast<std::uint64_t>(percent);
        f.fans[0].currentRPM += 10;
        isEveryOneNew = f.compose() && isEveryOneNew;
    }

    EXPECT_EQ(test::allocationsOfThisThread() - before, 0);
    EXPECT_TRUE(isEveryOneNew);
}

}  // namespace
}  // namespace kestro
