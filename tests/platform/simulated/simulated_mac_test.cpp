#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace kestro {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t currentSpeedOfFan0 = 0x46304163;  // "F0Ac"

SMCRecord record(std::uint32_t key, std::uint8_t command, std::uint8_t size = 0) {
    SMCRecord input{};
    for (std::size_t byte = 0; byte < 4; ++byte) {
        input[byte] = static_cast<std::uint8_t>(key >> (8 * byte));
    }
    input[28] = size;
    input[42] = command;
    return input;
}

/// Busy share of all cores between two readings, in percent.
double totalUsage(const ProcessorLoadInfo& before, const ProcessorLoadInfo& after) {
    double busy = 0;
    double all = 0;
    for (std::size_t index = 0; index < before.info.size(); ++index) {
        const double difference = after.info[index] - before.info[index];
        all += difference;
        busy += index % 4 == 2 ? 0 : difference;
    }
    return busy / all * 100;
}

TEST(SimulatedMac, CountsOutstandingArraysAndWrongDeallocations) {
    SimulatedMac mac;
    auto& host = mac.platform().machHost;

    const auto first = *host.hostProcessorInfo();
    const auto second = *host.hostProcessorInfo();
    EXPECT_EQ(mac.machHost.outstandingArrays(), 2);
    EXPECT_NE(first.info.data(), second.info.data());
    host.vmDeallocate(first.info.data(), first.info.size());
    EXPECT_EQ(mac.machHost.wrongDeallocations(), 1);
    host.vmDeallocate(first.info.data(), first.info.size() * 4);
    host.vmDeallocate(first.info.data(), first.info.size() * 4);

    EXPECT_EQ(mac.machHost.wrongDeallocations(), 2);
    EXPECT_EQ(mac.machHost.outstandingArrays(), 1);
}

TEST(SimulatedMac, IsAboutEighteenPercentBusyAndTheSameInEveryRun) {
    SimulatedMac mac;
    SimulatedMac twin;

    const auto before = *mac.machHost.hostProcessorInfo();
    (void)twin.machHost.hostProcessorInfo();
    mac.advance(10min);
    twin.advance(10min);
    const auto after = *mac.machHost.hostProcessorInfo();

    EXPECT_NEAR(totalUsage(before, after), 18, 4);
    EXPECT_TRUE(std::ranges::equal(after.info, twin.machHost.hostProcessorInfo()->info));
}

TEST(SimulatedFailure, StrikesAboutEverySecondCallAndTheSameOnesInEveryRun) {
    constexpr int calls = 1000;
    SimulatedFailure failure;
    SimulatedFailure again;
    failure.sometimes(7);
    again.sometimes(7);

    int strikes = 0;
    for (int call = 0; call < calls; ++call) {
        const bool strikesNow = failure.strikes();
        EXPECT_EQ(again.strikes(), strikesNow);
        strikes += strikesNow ? 1 : 0;
    }

    EXPECT_GT(strikes, calls * 4 / 10);
    EXPECT_LT(strikes, calls * 6 / 10);
    failure.times(0);
    EXPECT_FALSE(failure.strikes());
}

TEST(SimulatedMac, StopsMovingOnceFrozen) {
    SimulatedMac mac;
    mac.advance(5s);
    mac.freeze();
    const auto before = *mac.machHost.hostProcessorInfo();
    const auto traffic = (*mac.networkInterfaces.getifaddrs())[2].statistics->receivedBytes;

    mac.advance(1h);

    EXPECT_TRUE(std::ranges::equal(before.info, mac.machHost.hostProcessorInfo()->info));
    EXPECT_EQ((*mac.networkInterfaces.getifaddrs())[2].statistics->receivedBytes, traffic);
    EXPECT_EQ(mac.machHost.hostStatistics64()->activeCount, mac.machHost.statistics.activeCount);
    EXPECT_EQ(mac.hidEventSystem.copyTemperatureEvent(0), 50.1);
}

TEST(SimulatedMac, MovesTrafficOverTheFirstRealInterface) {
    SimulatedMac mac;
    const auto before = mac.networkInterfaces.entries;

    mac.advance(1min);
    const auto after = *mac.networkInterfaces.getifaddrs();

    EXPECT_EQ(after[0].statistics->receivedBytes, before[0].statistics->receivedBytes);
    const auto rate = (after[2].statistics->receivedBytes - before[2].statistics->receivedBytes) / 60;
    EXPECT_GT(rate, 500'000u);
    EXPECT_LT(rate, 5'000'000u);
}

TEST(SimulatedMac, ImplementsTheControllersRecords) {
    SimulatedMac mac;
    mac.freeze();
    const auto connection = *mac.smc.open();
    SMCRecord information{};
    SMCRecord bytes{};

    ASSERT_TRUE(mac.smc.callStructMethod(connection, record(currentSpeedOfFan0, 9), information));
    ASSERT_TRUE(mac.smc.callStructMethod(connection, record(currentSpeedOfFan0, 5, 4), bytes));

    EXPECT_EQ(information[28], 4);
    EXPECT_EQ(std::string(information.begin() + 32, information.begin() + 36), " tlf");
    float speed = 0;
    std::memcpy(&speed, bytes.data() + 48, sizeof speed);
    EXPECT_EQ(speed, 1420);
    EXPECT_EQ(mac.smc.malformedRecords(), 0);
}

TEST(SimulatedMac, RejectsMalformedControllerRecords) {
    SimulatedMac mac;
    const auto connection = *mac.smc.open();
    SMCRecord used{};
    SMCRecord output{};
    used[3] = 1;
    SMCRecord stray = record(currentSpeedOfFan0, 9);
    stray[77] = 1;

    EXPECT_FALSE(mac.smc.callStructMethod(connection + 1, record(currentSpeedOfFan0, 9), output));
    EXPECT_FALSE(mac.smc.callStructMethod(connection, record(currentSpeedOfFan0, 9), used));
    EXPECT_FALSE(mac.smc.callStructMethod(connection, stray, output));
    EXPECT_FALSE(mac.smc.callStructMethod(connection, record(currentSpeedOfFan0, 6), output));
    EXPECT_FALSE(mac.smc.callStructMethod(connection, record(currentSpeedOfFan0, 5, 2), output));
    mac.smc.close(connection);
    EXPECT_FALSE(mac.smc.callStructMethod(connection, record(currentSpeedOfFan0, 9), output));

    EXPECT_EQ(mac.smc.malformedRecords(), 6);
}

TEST(SimulatedMac, PublishesTwentySensorsToAClientThatMatchesThem) {
    SimulatedMac mac;
    const auto client = *mac.hidEventSystem.createClient();

    EXPECT_EQ(mac.hidEventSystem.copyServices(client)->size(), 21u);
    mac.hidEventSystem.setMatching(client, 0xFF00, 5);

    EXPECT_EQ(mac.hidEventSystem.copyServices(client)->size(), 20u);
}

TEST(SimulatedMac, ListsProcessesByCPUOrByMemory) {
    SimulatedMac mac;
    mac.freeze();

    const auto byCPU = mac.commandRunner.run("/bin/ps", {"-A", "-r"})->standardOutput;
    const auto byMemory = mac.commandRunner.run("/bin/ps", {"-A", "-m"})->standardOutput;

    EXPECT_LT(byCPU.find("clang"), byCPU.find("WindowServer"));
    EXPECT_LT(byMemory.find("Safari"), byMemory.find("WindowServer"));
    EXPECT_EQ(mac.commandRunner.calls().size(), 2u);
}

TEST(SimulatedMac, SwitchesThePowerModeByScriptUnlessRefused) {
    SimulatedMac mac;
    const std::string script = "do shell script \"pmset -a powermode 2\" with administrator privileges";

    mac.scriptRunner.refusal.times(1);
    mac.scriptRunner.execute(script);
    EXPECT_NE(mac.commandRunner.run("/usr/bin/pmset", {"-g"})->standardOutput.find("powermode            0"),
              std::string::npos);
    mac.scriptRunner.execute(script);

    EXPECT_NE(mac.commandRunner.run("/usr/bin/pmset", {"-g"})->standardOutput.find("powermode            2"),
              std::string::npos);
    EXPECT_EQ(mac.scriptRunner.sources, (std::vector{script, script}));
}

TEST(SimulatedMac, GrantsRefusesAndRevokesAssertions) {
    SimulatedMac mac;
    PowerAssertionID revoked = 0;
    mac.powerAssertions.setRevocationHandler([&](PowerAssertionID id) { revoked = id; });

    mac.powerAssertions.refusal.times(1);
    EXPECT_FALSE(mac.powerAssertions.create("PreventUserIdleSystemSleep", 255, "name"));
    const auto kept = *mac.powerAssertions.create("PreventUserIdleSystemSleep", 255, "name");
    const auto lost = *mac.powerAssertions.create("PreventUserIdleDisplaySleep", 255, "name");
    mac.powerAssertions.revoke(lost);

    EXPECT_EQ(revoked, lost);
    EXPECT_EQ(mac.assertionsHeld(), 1);
    EXPECT_EQ(mac.powerAssertions.held().front().type, "PreventUserIdleSystemSleep");
    mac.powerAssertions.release(kept);
    EXPECT_EQ(mac.assertionsHeld(), 0);
}

TEST(SimulatedMac, KeepsThePreferencesByKindAndCountsTheWrites) {
    SimulatedMac mac;

    mac.userDefaults.set("number", std::int64_t{1});
    mac.userDefaults.set("number", std::int64_t{2});
    mac.userDefaults.set("flag", true);

    EXPECT_EQ(mac.userDefaults.object("number"), PreferenceValue(std::int64_t{2}));
    EXPECT_EQ(mac.userDefaults.object("flag"), PreferenceValue(true));
    EXPECT_FALSE(mac.userDefaults.object("missing"));
    EXPECT_EQ(mac.userDefaults.writes("number"), 2);
    EXPECT_EQ(mac.userDefaults.writes("missing"), 0);
    EXPECT_EQ(mac.userDefaults.totalWrites(), 3);
}

TEST(SimulatedMac, DeliversNotificationsToTheObserversOfTheName) {
    SimulatedMac mac;
    std::vector<std::string> seen;
    auto observer = mac.notifications.observe("a", [&](const NotificationUserInfo& userInfo) {
        seen.push_back(std::get<std::string>(userInfo.at("tab")));
    });

    mac.platform().notifications.post("a", {{"tab", "first"}});
    mac.platform().notifications.post("b");
    EXPECT_TRUE(seen.empty());
    mac.runPending();
    observer.cancel();
    mac.platform().notifications.post("a", {{"tab", "second"}});
    mac.runPending();

    EXPECT_EQ(seen, (std::vector<std::string>{"first"}));
    EXPECT_EQ(mac.notifications.postings.size(), 3u);
}

TEST(SimulatedMac, CoalescesConsecutiveWritesIntoOneEvent) {
    SimulatedMac mac;
    int events = 0;
    mac.fileEvents.createIfMissing("/f");
    auto watch = mac.fileEvents.watchWrites("/f", [&] { ++events; });

    mac.fileEvents.write("/f", "one");
    mac.fileEvents.write("/f", "two");
    mac.runPending();
    EXPECT_EQ(events, 1);
    mac.fileEvents.truncate("/f");
    mac.runPending();
    EXPECT_EQ(events, 2);
    mac.fileEvents.remove("/f");
    EXPECT_EQ(mac.fileEvents.contents("/f"), "");
    mac.fileEvents.write("/f", "three");
    watch.reset();
    mac.runPending();

    EXPECT_EQ(events, 2);
    EXPECT_EQ(mac.fileEvents.contents("/f"), "three");
    EXPECT_EQ(mac.fileEvents.watches(), 0);
}

TEST(SimulatedMac, CreatesAFileOnlyIfMissing) {
    SimulatedMac mac;
    mac.fileEvents.write("/f", std::string(5000, 'x'));

    mac.fileEvents.createIfMissing("/f");
    mac.fileEvents.createFailure.always();
    mac.fileEvents.createIfMissing("/g");

    EXPECT_EQ(mac.fileEvents.read("/f")->size(), 4096u);
    EXPECT_FALSE(mac.fileEvents.read("/g"));
    EXPECT_EQ(mac.fileEvents.watchWrites("/g", [] {}), nullptr);
}

TEST(SimulatedMac, FailsEveryCallOnRequest) {
    SimulatedMac mac;
    mac.machHost.processorInfoFailure.always();
    mac.machHost.statisticsFailure.always();
    mac.machHost.pageSizeFailure.always();
    mac.fileSystem.failure.always();
    mac.networkInterfaces.interfacesFailure.always();
    mac.networkInterfaces.nameInfoFailure.always();
    mac.powerSources.failure.always();
    mac.smc.openFailure.always();
    mac.hidEventSystem.clientFailure.always();
    mac.commandRunner.failure.always();
    mac.systemControl.integers.clear();
    mac.systemControl.texts.clear();

    EXPECT_FALSE(mac.machHost.hostProcessorInfo());
    EXPECT_FALSE(mac.machHost.hostStatistics64());
    EXPECT_FALSE(mac.machHost.hostPageSize());
    EXPECT_FALSE(mac.fileSystem.statvfs("/"));
    EXPECT_FALSE(mac.networkInterfaces.getifaddrs());
    EXPECT_FALSE(mac.networkInterfaces.getnameinfo({AddressFamily::ipv4, {10, 0, 0, 1}}));
    EXPECT_FALSE(mac.powerSources.copyDescriptions());
    EXPECT_FALSE(mac.smc.open());
    EXPECT_FALSE(mac.hidEventSystem.createClient());
    EXPECT_FALSE(mac.commandRunner.run("/bin/ps", {}));
    EXPECT_FALSE(mac.systemControl.sysctlByNameInt32("hw.perflevel0.physicalcpu"));
    EXPECT_FALSE(mac.systemControl.sysctlByNameText("hw.model"));
}

}  // namespace
}  // namespace kestro
