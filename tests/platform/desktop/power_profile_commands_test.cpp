#include "platform/desktop/power_profile_script_runner.h"
#include "platform/desktop/session_command_runner.h"
#include "tests/platform/desktop/power_profiles_fixture.h"

namespace kestro {
namespace {

using namespace std::chrono_literals;
using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(PowerProfilesTest, OnlyTheExactScriptSwitches) {
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));
    PowerProfileScriptRunner runner(profiles());

    inBackground(
        [&] { runner.execute("do shell script \"pmset -a powermode 3\" with administrator privileges"); });
    EXPECT_EQ(daemon.profile(), QStringLiteral("balanced"));
    inBackground(
        [&] { runner.execute("do shell script \"pmset -a powermode 1\" with administrator privileges"); });

    EXPECT_EQ(daemon.profile(), QStringLiteral("power-saver"));
    EXPECT_EQ(report(), reportOf('1'));
}

class RecordingRunner final : public CommandRunner {
public:
    std::optional<CommandOutput> run(const std::string& executable,
                                     const std::vector<std::string>& arguments) override {
        calls.push_back(executable);
        calls.insert(calls.end(), arguments.begin(), arguments.end());
        return CommandOutput{"other", 3};
    }

    std::vector<std::string> calls;
};

TEST_F(PowerProfilesTest, TheCommandRunnerHandlesThePowerToolAndForwardsTheRest) {
    setKernel("performance", "balanced performance");
    RecordingRunner others;
    SessionCommandRunner runner(profiles(), others);

    const auto power = inBackground([&] { return runner.run("/usr/bin/pmset", {"-g"}); });
    EXPECT_EQ(power->standardOutput, reportOf('2'));
    EXPECT_EQ(power->exitStatus, 0);
    EXPECT_THAT(others.calls, IsEmpty());
    EXPECT_EQ(runner.run("/bin/ps", {"-A"})->standardOutput, "other");
    EXPECT_EQ(runner.run("/usr/bin/pmset", {"-a"})->exitStatus, 3);
    EXPECT_THAT(others.calls, ElementsAre("/bin/ps", "-A", "/usr/bin/pmset", "-a"));
}

}  // namespace
}  // namespace kestro
