#include "tests/platform/desktop/power_profiles_fixture.h"

#include <csignal>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using namespace test;

TEST_F(PowerProfilesTest, ReportTheKernelsProfileWithoutADaemon) {
    for (const auto& [value, mode] : std::map<std::string, char>{{"low-power", '1'},
                                                                 {"quiet", '1'},
                                                                 {"cool", '1'},
                                                                 {"balanced", '0'},
                                                                 {"balanced-performance", '0'},
                                                                 {"performance", '2'}}) {
        setKernel(value, "low-power balanced performance");
        EXPECT_EQ(report(), reportOf(mode)) << value;
    }
    for (const std::string value : {"custom", "", "performance performance"}) {
        setKernel(value, "");
        EXPECT_EQ(report(), header) << value;
    }
    fs::remove(kernelFile());
    EXPECT_EQ(report(), header);
}

TEST_F(PowerProfilesTest, ReportTheKernelsProfileWithoutABus) {
    setKernel("performance", "balanced performance");
    BusLink none(PrivateBus::none(), {});
    PowerProfiles alone(none, paths, timing);

    EXPECT_EQ(alone.pmsetReport(), reportOf('2'));
}

TEST_F(PowerProfilesTest, WriteTheKernelsProfileAsAdministratorWithoutADaemon) {
    setKernel("balanced", "quiet balanced performance");
    setPkexec(R"(test "$1" = --disable-internal-agent || exit 1; shift; exec "$@")");

    select(PowerProfile::powerSaver);
    EXPECT_EQ(contentsOf(kernelFile()), "quiet\n") << "the value that this kernel offers";
    select(PowerProfile::performance);
    EXPECT_EQ(contentsOf(kernelFile()), "performance\n");
    select(PowerProfile::balanced);
    EXPECT_EQ(contentsOf(kernelFile()), "balanced\n");
}

TEST_F(PowerProfilesTest, DoNotPromptForUnsupportedOrActiveProfiles) {
    setKernel("balanced", "low-power balanced");
    setPkexec("touch '" + paths.root + "/asked'");

    select(PowerProfile::performance);
    select(PowerProfile::balanced);

    EXPECT_FALSE(fs::exists(paths.root + "/asked"));
}

TEST_F(PowerProfilesTest, ARefusalOrAMissingProgramChangesNothing) {
    setKernel("balanced", "low-power balanced performance");

    setPkexec("exit 126");
    select(PowerProfile::performance);
    paths.pkexec = "/nonexistent/pkexec";
    BusLink none(PrivateBus::none(), {});
    PowerProfiles alone(none, paths, timing);
    alone.select(PowerProfile::performance);

    EXPECT_EQ(contentsOf(kernelFile()), "balanced\n");
}

TEST_F(PowerProfilesTest, ClosingCancelsAnUnansweredPrompt) {
    setKernel("balanced", "low-power balanced performance");
    const std::string pidFile = paths.root + "/pid";
    setPkexec("cd '" + paths.root + "' && echo $$ > pid.new && mv pid.new pid; exec sleep 1000");
    auto asking =
        std::async(std::launch::async, [&profiles = profiles()] { profiles.select(PowerProfile::performance); });
    ASSERT_TRUE(waitUntil([&] { return fs::exists(pidFile); }));

    profiles().close();
    asking.get();

    EXPECT_EQ(::kill(std::stoi(contentsOf(pidFile)), 0), -1) << "the program has ended and was reaped";
    EXPECT_EQ(contentsOf(kernelFile()), "balanced\n");
}

TEST_F(PowerProfilesTest, SayWhyTheKernelsProfileWasNotSwitched) {
    using Failure = PowerModeConditions::Failure;
    setKernel("balanced", "low-power balanced");
    setPkexec("exit 126");

    select(PowerProfile::performance);
    EXPECT_TRUE(failsWith(2, Failure::noService));
    select(PowerProfile::powerSaver);
    EXPECT_TRUE(failsWith(1, Failure::denied));
    setPkexec(R"(shift; exec "$@")");
    select(PowerProfile::balanced);
    EXPECT_TRUE(waitUntil([&] { return !profiles().conditions().failedSwitch; }));
}

}  // namespace
}  // namespace kestro
