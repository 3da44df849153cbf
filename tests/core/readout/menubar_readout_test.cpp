#include "core/readout/menubar_readout.h"

#include "core/settings/user_settings.h"
#include "platform/simulated/simulated_user_defaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kestro {
namespace {

using Module = MenubarModuleType;
using Modules = std::vector<Module>;

/// A machine with 42 % of memory in use, 18 % load and one fan at 1420 rpm.
struct Fixture {
    MemoryTelemetry memory;
    CPUTelemetry cpu = CPUTelemetry::initial();
    std::vector<FanTelemetry> fans{{0, "Fan", 1420, 1400, 1200, 7300}};
    ReadoutInputs inputs;
    Modules modules{Module::appIcon, Module::memory, Module::fanSpeed};
    MenubarDelimiter delimiter = MenubarDelimiter::middleDot;
    MenubarIconStyle style = MenubarIconStyle::iconsAndText;

    Fixture() {
        memory.totalBytes = 100;
        memory.usedBytes = 42;
        cpu.totalUsage = 18;
        inputs.memory = &memory;
        inputs.cpu = &cpu;
        inputs.fans = fans;
    }

    ReadoutLayout layout() const { return {modules, delimiter, style}; }
    Readout readout() const { return composeReadout(layout(), inputs); }
};

TEST(MenubarReadout, ShowsTheDefaultModules) {
    const Fixture f;

    EXPECT_EQ(f.readout().symbol, readoutSymbol);
    EXPECT_EQ(f.readout().title, " RAM 42% · 1420 RPM");
    EXPECT_EQ(f.readout().spokenText, "RAM 42% · 1420 RPM");
}

TEST(MenubarReadout, ShowsTheDefaultModulesBeforeTheFirstSample) {
    Fixture f;
    f.inputs = {};

    EXPECT_EQ(f.readout().title, " RAM -- · 0 RPM");
}

TEST(MenubarReadout, NamesItsSymbol) {
    EXPECT_EQ(readoutSymbol, (ReadoutSymbol{"waveform.path.ecg", "Kestro", 12}));
    EXPECT_EQ(emptyReadoutSymbol.name, "waveform.path.ecg");
    EXPECT_EQ(emptyReadoutSymbol.accessibilityDescription, "Kestro");
    EXPECT_GT(emptyReadoutSymbol.pointSize, readoutSymbol.pointSize);
}

TEST(MenubarReadout, ShowsOnlyTheSymbolForAnEmptyList) {
    Fixture f;
    f.modules = {};
    for (const auto style : allCases<MenubarIconStyle>()) {
        f.style = style;

        EXPECT_EQ(f.readout(), (Readout{emptyReadoutSymbol, "", ""}));
    }
}

TEST(MenubarReadout, ShowsTheSmallerSymbolForTheIconAlone) {
    Fixture f;
    f.modules = {Module::appIcon};
    for (const auto style : allCases<MenubarIconStyle>()) {
        f.style = style;

        EXPECT_EQ(f.readout(), (Readout{readoutSymbol, "", ""}));
    }
}

TEST(MenubarReadout, PutsTheSymbolFirstWhereverItIsListed) {
    Fixture f;
    f.modules = {Module::memory, Module::fanSpeed, Module::appIcon};

    EXPECT_EQ(f.readout(), (Readout{readoutSymbol, " RAM 42% · 1420 RPM", "RAM 42% · 1420 RPM"}));
}

TEST(MenubarReadout, SkipsEveryIconInTheList) {
    Fixture f;
    f.modules = {Module::memory, Module::appIcon, Module::fanSpeed, Module::appIcon};

    EXPECT_EQ(f.readout().title, " RAM 42% · 1420 RPM");
}

TEST(MenubarReadout, HasNoSymbolAndNoLeadingBlankWithoutTheIcon) {
    Fixture f;
    f.modules = {Module::fanSpeed, Module::cpuUsage};

    EXPECT_EQ(f.readout(), (Readout{std::nullopt, "1420 RPM · CPU 18%", "1420 RPM · CPU 18%"}));
}

TEST(MenubarReadout, JoinsWithTheChosenDelimiter) {
    Fixture f;
    const std::vector<std::string> expected{" RAM 42% · 1420 RPM", " RAM 42% | 1420 RPM", " RAM 42% / 1420 RPM",
                                            " RAM 42%  1420 RPM"};
    for (const auto delimiter : allCases<MenubarDelimiter>()) {
        f.delimiter = delimiter;

        EXPECT_EQ(f.readout().title, expected[static_cast<std::size_t>(delimiter)]);
    }
}

TEST(MenubarReadout, ShowsARepeatedModuleAgain) {
    Fixture f;
    f.modules = {Module::memory, Module::memory};

    EXPECT_EQ(f.readout().title, "RAM 42% · RAM 42%");
}

TEST(MenubarReadout, HidesTheSymbolInTheTextStyle) {
    Fixture f;
    f.style = MenubarIconStyle::textOnly;

    EXPECT_EQ(f.readout(), (Readout{std::nullopt, "RAM 42% · 1420 RPM", "RAM 42% · 1420 RPM"}));
}

TEST(MenubarReadout, ShowsOnlyTheSymbolInTheIconStyleButKeepsTheSpokenText) {
    Fixture f;
    f.style = MenubarIconStyle::iconOnly;
    EXPECT_EQ(f.readout(), (Readout{readoutSymbol, "", "RAM 42% · 1420 RPM"}));

    f.modules = {Module::memory};
    EXPECT_EQ(f.readout(), (Readout{readoutSymbol, "", "RAM 42%"}));
}

TEST(MenubarReadout, ComposesIntoReusedBuffersAsIntoNewOnes) {
    Fixture f;
    Readout used{std::nullopt, "something old", "something else"};

    composeReadout(f.layout(), f.inputs, used);

    EXPECT_EQ(used, f.readout());
}

TEST(MenubarReadout, AllocatesNothingForTheSameLength) {
    Fixture f;
    Readout used = f.readout();
    const auto* const title = used.title.data();
    const auto* const spoken = used.spokenText.data();

    f.memory.usedBytes = 55;
    composeReadout(f.layout(), f.inputs, used);

    EXPECT_EQ(used.title, " RAM 55% · 1420 RPM");
    EXPECT_EQ(used.title.data(), title);
    EXPECT_EQ(used.spokenText.data(), spoken);
}

TEST(MenubarReadout, ComparesEqualOnlyWhenNothingVisibleHasChanged) {
    Fixture f;
    const auto before = f.readout();

    f.fans[0].currentRPM = 1420.7;
    EXPECT_EQ(f.readout(), before);
    f.fans[0].currentRPM = 1421;

    EXPECT_NE(f.readout(), before);
}

TEST(MenubarReadout, ReservesRoomForTheWidestReadout) {
    Fixture f;

    EXPECT_EQ(widestReadout(f.layout(), WidestTextInputs::of(f.inputs)).title, " RAM 100% · 9999 RPM");
    f.style = MenubarIconStyle::iconOnly;
    EXPECT_EQ(widestReadout(f.layout(), WidestTextInputs::of(f.inputs)).title, "");
}

TEST(MenubarReadout, ShowsEverythingInTheToolTip) {
    Fixture f;
    EXPECT_EQ(readoutToolTip(f.readout()), "Kestro: RAM 42% · 1420 RPM");

    f.style = MenubarIconStyle::iconOnly;
    EXPECT_EQ(readoutToolTip(f.readout()), "Kestro: RAM 42% · 1420 RPM");
    f.modules = {};
    EXPECT_EQ(readoutToolTip(f.readout()), "Kestro");
}

TEST(MenubarReadout, TakesItsLayoutFromTheSettings) {
    SimulatedUserDefaults defaults;
    UserSettings settings(defaults);
    settings.activeMenubarModules.set({Module::battery, Module::network});
    settings.menubarDelimiter.set(MenubarDelimiter::slash);
    settings.menubarIconStyle.set(MenubarIconStyle::iconOnly);

    const auto layout = ReadoutLayout::of(settings);

    EXPECT_TRUE(std::ranges::equal(layout.modules, Modules{Module::battery, Module::network}));
    EXPECT_EQ(layout.delimiter, MenubarDelimiter::slash);
    EXPECT_EQ(layout.iconStyle, MenubarIconStyle::iconOnly);
}

}  // namespace
}  // namespace kestro
