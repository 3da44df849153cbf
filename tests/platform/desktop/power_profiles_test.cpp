#include "platform/desktop/power_profiles.h"

#include "platform/desktop/power_profile_script_runner.h"
#include "platform/desktop/session_command_runner.h"
#include "tests/platform/desktop/event_waiting.h"
#include "tests/platform/desktop/fake_service.h"
#include "tests/platform/desktop/private_bus.h"

#include <QDBusVariant>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>

namespace kestro {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::FakeService;
using testing_support::PrivateBus;
using testing_support::waitUntil;

const QString newName = QStringLiteral("org.freedesktop.UPower.PowerProfiles");
const QString oldName = QStringLiteral("net.hadess.PowerProfiles");
constexpr std::string_view header = "System-wide power settings:\nCurrently in use:\n";

std::string reportOf(char mode) {
    return std::string(header) + " powermode            " + mode + "\n";
}

/// A daemon whose profile is a variable.
class FakeDaemon {
public:
    FakeDaemon(const QDBusConnection& connection, const QString& name)
        : name_(name),
          service(connection, name,
                  {{QStringLiteral("Get"),
                    [this](const QDBusMessage& call) {
                        return call.createReply(QVariant::fromValue(QDBusVariant(profile())));
                    }},
                   {QStringLiteral("Set"), [this](const QDBusMessage& call) {
                        wasInteractive = call.isInteractiveAuthorizationAllowed();
                        setProfile(call.arguments().at(2).value<QDBusVariant>().variant());
                        return call.createReply();
                    }}}) {}

    QVariant profile() const {
        const std::lock_guard lock(mutex_);
        return profile_;
    }
    void setProfile(const QVariant& profile) {
        const std::lock_guard lock(mutex_);
        profile_ = profile;
    }

    /// Announces a change; `from` is who says so.
    void announce(const QVariantMap& changes, const QStringList& invalidated, const QDBusConnection& from) const {
        auto signal = QDBusMessage::createSignal(
            QLatin1Char('/') + QString(name_).replace(QLatin1Char('.'), QLatin1Char('/')),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
        signal << name_ << changes << invalidated;
        ASSERT_TRUE(from.send(signal));
    }
    void announce(const QVariant& value) const {
        announce({{QStringLiteral("ActiveProfile"), value}}, {}, service.connection());
    }

private:
    QString name_;
    mutable std::mutex mutex_;
    QVariant profile_ = QStringLiteral("balanced");

public:
    std::atomic<bool> wasInteractive = false;
    FakeService service;
};

class PowerProfilesTest : public testing::Test {
protected:
    PowerProfilesTest() {
        paths.root = directory.path().toStdString();
        fs::create_directories(kernelFile().parent_path());
    }

    fs::path kernelFile() const { return fs::path(paths.root) / "sys/firmware/acpi/platform_profile"; }

    void setKernel(const std::string& profile, const std::string& choices) {
        std::ofstream(kernelFile()) << profile << '\n';
        std::ofstream(kernelFile().string() + "_choices") << choices << '\n';
    }

    static std::string contentsOf(const fs::path& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// Puts a program in the place of pkexec.
    void setPkexec(const std::string& script) {
        const fs::path program = fs::path(paths.root) / "pkexec";
        std::ofstream(program) << "#!/bin/sh\n" << script << '\n';
        fs::permissions(program, fs::perms::owner_all);
        paths.pkexec = program;
    }

    PowerProfiles& profiles() {
        if (!profiles_) {
            profiles_ = std::make_unique<PowerProfiles>(system, paths, timing);
        }
        return *profiles_;
    }

    /// Runs a background thread's call while the main thread's event loop goes on.
    template <typename Call>
    auto inBackground(Call call) {
        auto future = std::async(std::launch::async, std::move(call));
        EXPECT_TRUE(waitUntil([&] { return future.wait_for(0s) == std::future_status::ready; }));
        return future.get();
    }

    std::string report() {
        return inBackground([&profiles = profiles()] { return profiles.pmsetReport(); });
    }

    void select(PowerProfile profile) {
        inBackground([&profiles = profiles(), profile] { profiles.select(profile); });
    }

    bool reports(const std::string& expected) {
        return waitUntil([&] { return report() == expected; });
    }

    QTemporaryDir directory;
    PlatformProfile::Paths paths;
    PowerProfiles::Timing timing{20s, 20s};
    PrivateBus bus;
    QDBusConnection system = bus.connect();

private:
    std::unique_ptr<PowerProfiles> profiles_;
};

TEST_F(PowerProfilesTest, ReportTheDaemonsProfileUnderEitherName) {
    for (const auto& name : {oldName, newName}) {
        FakeDaemon daemon(bus.connect(), name);
        for (const auto& [profile, mode] : std::map<QString, char>{{QStringLiteral("power-saver"), '1'},
                                                                   {QStringLiteral("balanced"), '0'},
                                                                   {QStringLiteral("performance"), '2'}}) {
            daemon.setProfile(profile);
            PowerProfiles fresh(system, paths, timing);

            EXPECT_EQ(inBackground([&] { return fresh.pmsetReport(); }), reportOf(mode));
        }
    }
}

TEST_F(PowerProfilesTest, ReadingAsksTheDaemonOnce) {
    FakeDaemon daemon(bus.connect(), newName);

    for (int reading = 0; reading < 50; ++reading) {
        report();
    }

    EXPECT_THAT(daemon.service.calls(),
                ElementsAre("Get(\"org.freedesktop.UPower.PowerProfiles\", \"ActiveProfile\")"));
}

TEST_F(PowerProfilesTest, ADaemonThatRefusedIsAskedAgainByTheNextReading) {
    FakeDaemon daemon(bus.connect(), newName);
    daemon.service.refuse(QStringLiteral("Get"));
    EXPECT_EQ(report(), header);

    daemon.service.answer(QStringLiteral("Get"), [](const QDBusMessage& call) {
        return call.createReply(QVariant::fromValue(QDBusVariant(QStringLiteral("performance"))));
    });

    EXPECT_TRUE(reports(reportOf('2')));
}

TEST_F(PowerProfilesTest, FollowWhatTheDaemonAnnounces) {
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));

    daemon.announce(QStringLiteral("performance"));
    EXPECT_TRUE(reports(reportOf('2')));
    daemon.setProfile(QStringLiteral("power-saver"));
    daemon.announce({}, {QStringLiteral("ActiveProfile")}, daemon.service.connection());
    EXPECT_TRUE(reports(reportOf('1')));
}

TEST_F(PowerProfilesTest, DoNotListenToStrangers) {
    FakeDaemon daemon(bus.connect(), newName);
    const FakeService stranger(bus.connect(), QStringLiteral("org.example.Stranger"));
    ASSERT_EQ(report(), reportOf('0'));

    daemon.announce({{QStringLiteral("ActiveProfile"), QStringLiteral("performance")}}, {}, stranger.connection());
    stranger.settle(system);
    daemon.service.settle(system);

    EXPECT_EQ(report(), reportOf('0'));
}

TEST_F(PowerProfilesTest, KnowNoModeForWhatIsNoProfile) {
    for (const QVariant& nonsense :
         {QVariant(7), QVariant(QStringLiteral("turbo")), QVariant(QStringList{QStringLiteral("balanced")}),
          QVariant(QString(100'000, QLatin1Char('x')))}) {
        FakeDaemon daemon(bus.connect(), newName);
        daemon.setProfile(nonsense);
        PowerProfiles fresh(system, paths, timing);

        EXPECT_EQ(inBackground([&] { return fresh.pmsetReport(); }), header);
    }
}

TEST_F(PowerProfilesTest, SurviveSignalsOfOtherForms) {
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));
    auto signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/UPower/PowerProfiles"),
                                             QStringLiteral("org.freedesktop.DBus.Properties"),
                                             QStringLiteral("PropertiesChanged"));

    for (const auto& arguments : {QVariantList{}, QVariantList{newName}, QVariantList{newName, 1, 2},
                                  QVariantList{newName, QVariantMap{}}}) {
        signal.setArguments(arguments);
        daemon.service.connection().send(signal);
    }
    daemon.announce({{QStringLiteral("Other"), 3}}, {QStringLiteral("Profiles")}, daemon.service.connection());
    daemon.announce(QStringLiteral("performance"));

    EXPECT_TRUE(reports(reportOf('2')));
}

TEST_F(PowerProfilesTest, ASlowDaemonHasNoModeYet) {
    timing.firstAnswer = 10ms;
    FakeDaemon daemon(bus.connect(), newName);
    daemon.service.hold(true);

    EXPECT_TRUE(reports(std::string(header)));
    ASSERT_TRUE(waitUntil([&] { return daemon.service.heldCalls() == 1; }));
    daemon.setProfile(QStringLiteral("performance"));
    daemon.service.answerHeld();

    EXPECT_TRUE(reports(reportOf('2')));
}

TEST_F(PowerProfilesTest, FollowTheDaemonThatIsThere) {
    setKernel("low-power", "low-power balanced performance");
    FakeDaemon older(bus.connect(), oldName);
    older.setProfile(QStringLiteral("performance"));
    ASSERT_EQ(report(), reportOf('2'));

    {
        const FakeDaemon newer(bus.connect(), newName);
        EXPECT_TRUE(reports(reportOf('0')));
    }
    EXPECT_TRUE(reports(reportOf('2')));
    older.service.vanish();
    EXPECT_TRUE(reports(reportOf('1'))) << "what the kernel says";
    older.service.appear();
    EXPECT_TRUE(reports(reportOf('2')));
}

TEST_F(PowerProfilesTest, SwitchAndReadAgain) {
    FakeDaemon daemon(bus.connect(), oldName);
    ASSERT_EQ(report(), reportOf('0'));

    select(PowerProfile::performance);

    EXPECT_EQ(report(), reportOf('2'));
    EXPECT_EQ(daemon.service.calls()[1],
              "Set(\"net.hadess.PowerProfiles\", \"ActiveProfile\", <\"performance\">)");
    EXPECT_TRUE(daemon.wasInteractive) << "the user may be asked";
}

TEST_F(PowerProfilesTest, ADaemonThatRevertsTheChangeAtOnceShowsTheOldProfile) {
    FakeDaemon daemon(bus.connect(), newName);
    daemon.service.answer(QStringLiteral("Set"), [&](const QDBusMessage& call) {
        daemon.announce(QStringLiteral("performance"));
        daemon.announce(QStringLiteral("balanced"));
        return call.createReply();
    });

    select(PowerProfile::performance);

    EXPECT_EQ(report(), reportOf('0'));
}

TEST_F(PowerProfilesTest, ARefusedSwitchShowsTheOldProfile) {
    FakeDaemon daemon(bus.connect(), newName);
    daemon.service.refuse(QStringLiteral("Set"), QStringLiteral("org.freedesktop.DBus.Error.AccessDenied"));

    select(PowerProfile::performance);

    EXPECT_EQ(report(), reportOf('0'));
}

TEST_F(PowerProfilesTest, ADaemonThatVanishesWhileSwitchingLetsGo) {
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));
    daemon.service.hold(true);
    auto switching = std::async(std::launch::async, [&] { profiles().select(PowerProfile::performance); });
    ASSERT_TRUE(waitUntil([&] { return daemon.service.heldCalls() == 1; }));

    daemon.service.vanish();

    EXPECT_TRUE(waitUntil([&] { return switching.wait_for(0s) == std::future_status::ready; }));
    EXPECT_EQ(report(), header);
}

TEST_F(PowerProfilesTest, ANewerSwitchEndsTheWaitOfAnOlderOne) {
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));
    daemon.service.hold(true);
    auto older = std::async(std::launch::async, [&] { profiles().select(PowerProfile::performance); });
    ASSERT_TRUE(waitUntil([&] { return daemon.service.heldCalls() == 1; }));

    auto newer = std::async(std::launch::async, [&] { profiles().select(PowerProfile::powerSaver); });
    EXPECT_TRUE(waitUntil([&] { return older.wait_for(0s) == std::future_status::ready; }));
    EXPECT_EQ(newer.wait_for(0s), std::future_status::timeout);
    ASSERT_TRUE(waitUntil([&] { return daemon.service.heldCalls() == 2; }));
    daemon.service.hold(false);
    daemon.service.answerHeld();

    EXPECT_TRUE(waitUntil([&] { return newer.wait_for(0s) == std::future_status::ready; }));
    EXPECT_EQ(report(), reportOf('1'));
}

TEST_F(PowerProfilesTest, ClosingLetsEverybodyGo) {
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));
    daemon.service.hold(true);
    auto switching = std::async(std::launch::async, [&] { profiles().select(PowerProfile::performance); });
    ASSERT_TRUE(waitUntil([&] { return daemon.service.heldCalls() == 1; }));

    profiles().close();

    switching.get();
    profiles().select(PowerProfile::powerSaver);
}

TEST_F(PowerProfilesTest, ADaemonThatNeverAnswersIsGivenUp) {
    timing.consent = 30ms;
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));
    daemon.service.hold(true);

    select(PowerProfile::performance);

    EXPECT_EQ(report(), reportOf('0'));
}

TEST_F(PowerProfilesTest, WithoutADaemonReportTheKernelsProfile) {
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

TEST_F(PowerProfilesTest, WithoutABusReportTheKernelsProfile) {
    setKernel("performance", "balanced performance");
    PowerProfiles alone(PrivateBus::none(), paths, timing);

    EXPECT_EQ(alone.pmsetReport(), reportOf('2'));
}

TEST_F(PowerProfilesTest, WithoutADaemonTheAdministratorWritesTheKernelsProfile) {
    setKernel("balanced", "quiet balanced performance");
    setPkexec(R"(test "$1" = --disable-internal-agent || exit 1; shift; exec "$@")");

    select(PowerProfile::powerSaver);
    EXPECT_EQ(contentsOf(kernelFile()), "quiet\n") << "the value that this kernel offers";
    select(PowerProfile::performance);
    EXPECT_EQ(contentsOf(kernelFile()), "performance\n");
    select(PowerProfile::balanced);
    EXPECT_EQ(contentsOf(kernelFile()), "balanced\n");
}

TEST_F(PowerProfilesTest, NobodyIsAskedForWhatTheKernelDoesNotOfferOrHasAlready) {
    setKernel("balanced", "low-power balanced");
    setPkexec("touch " + paths.root + "/asked");

    select(PowerProfile::performance);
    select(PowerProfile::balanced);

    EXPECT_FALSE(fs::exists(paths.root + "/asked"));
}

TEST_F(PowerProfilesTest, ARefusalOrAMissingProgramChangesNothing) {
    setKernel("balanced", "low-power balanced performance");

    setPkexec("exit 126");
    select(PowerProfile::performance);
    paths.pkexec = "/nonexistent/pkexec";
    PowerProfiles alone(PrivateBus::none(), paths, timing);
    alone.select(PowerProfile::performance);

    EXPECT_EQ(contentsOf(kernelFile()), "balanced\n");
}

TEST_F(PowerProfilesTest, AQuestionThatNobodyAnswersIsWithdrawn) {
    setKernel("balanced", "low-power balanced performance");
    const std::string pidFile = paths.root + "/pid";
    setPkexec("echo $$ > " + pidFile + ".new; mv " + pidFile + ".new " + pidFile + "; exec sleep 1000");
    auto asking =
        std::async(std::launch::async, [&profiles = profiles()] { profiles.select(PowerProfile::performance); });
    ASSERT_TRUE(waitUntil([&] { return fs::exists(pidFile); }));

    profiles().close();
    asking.get();

    EXPECT_EQ(::kill(std::stoi(contentsOf(pidFile)), 0), -1) << "the program has ended and was waited for";
    EXPECT_EQ(contentsOf(kernelFile()), "balanced\n");
}

TEST(ProfileOfScript, TakesTheThreeScriptsAndNothingElse) {
    const std::string before = "do shell script \"pmset -a powermode ";
    const std::string after = "\" with administrator privileges";

    EXPECT_EQ(profileOfScript(before + "0" + after), PowerProfile::balanced);
    EXPECT_EQ(profileOfScript(before + "1" + after), PowerProfile::powerSaver);
    EXPECT_EQ(profileOfScript(before + "2" + after), PowerProfile::performance);
    for (const auto& script :
         {std::string(), before, after, before + after, before + "3" + after, before + "-1" + after,
          before + " 1" + after, before + "1 " + after, before + "1; id" + after, before + "1" + after + "\n",
          " " + before + "1" + after, before + "11" + after, before + "a" + after,
          std::string("do shell script \"id\" with administrator privileges"),
          std::string("pmset -a powermode 1")}) {
        EXPECT_EQ(profileOfScript(script), std::nullopt) << script;
    }
}

TEST_F(PowerProfilesTest, TheScriptSwitchesAndOtherTextsDoNothing) {
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

TEST_F(PowerProfilesTest, TheCommandRunnerAnswersThePowerToolAndPassesTheRestOn) {
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
