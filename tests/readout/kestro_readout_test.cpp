#include "tests/readout/kestro_readout_fixture.h"
#include "tests/readout/scripted_kestro.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <gtest/gtest.h>

namespace kestro {
namespace {

using KestroReadoutTest = test::KestroReadoutFixture;

TEST_F(KestroReadoutTest, PrintsALineForEachChange) {
    startKestro();
    start({});
    ASSERT_TRUE(prints("RAM 42%\n"));

    show(QStringLiteral("RAM 43%"));
    ASSERT_TRUE(prints("RAM 42%\nRAM 43%\n"));

    readout.toolTip = QStringLiteral("not printed");
    service->readoutDidUpdate();
    show(QStringLiteral("RAM 44%"));
    EXPECT_TRUE(prints("RAM 42%\nRAM 43%\nRAM 44%\n"));
}

TEST_F(KestroReadoutTest, WaitsForKestroAndForItsReturn) {
    start({});
    ASSERT_TRUE(prints("\n"));

    startKestro();
    ASSERT_TRUE(prints("\nRAM 42%\n"));

    service.reset();
    ASSERT_TRUE(prints("\nRAM 42%\n\n"));

    startKestro();
    ASSERT_TRUE(prints("\nRAM 42%\n\nRAM 42%\n"));
    show(QStringLiteral("RAM 43%"));
    EXPECT_TRUE(prints("\nRAM 42%\n\nRAM 42%\nRAM 43%\n"));
}

TEST_F(KestroReadoutTest, ConnectsAgainToABusThatWasLost) {
    startKestro();
    start({});
    ASSERT_TRUE(prints("RAM 42%\n"));

    bus.kill();
    ASSERT_TRUE(prints("RAM 42%\n\n"));

    bus.restart();
    startKestro();
    EXPECT_TRUE(prints("RAM 42%\n\nRAM 42%\n"));
}

TEST_F(KestroReadoutTest, ReadsAgainAfterAFailure) {
    test::ScriptedKestro kestro(bus);
    kestro.refusals[QStringLiteral("GetAll")] = 1;
    kestro.appear();

    start({});

    EXPECT_TRUE(prints("\nRAM 42%\n"));
}

TEST_F(KestroReadoutTest, WaitsForAKestroThatRefusesItAsAFollower) {
    test::ScriptedKestro kestro(bus);
    kestro.refusals[QStringLiteral("Follow")] = 1;
    kestro.appear();

    start({QStringLiteral("--host")});

    ASSERT_TRUE(prints("\nRAM 42%\n"));
    // What it cannot follow it neither shows nor hosts.
    EXPECT_EQ(kestro.calls, (QStringList{QStringLiteral("Follow"), QStringLiteral("Follow"),
                                         QStringLiteral("RegisterHost"), QStringLiteral("GetAll")}));
}

TEST_F(KestroReadoutTest, SleepsBetweenChanges) {
    startKestro();
    const QProcess& process = start({});
    ASSERT_TRUE(prints("RAM 42%\n"));
    const long long before = sleeps(process);

    QDBusConnection other = bus.connect();
    for (int percent = 0; percent < 50; ++percent) {
        figures.memoryPercent = percent;
        service->readoutDidUpdate();
        other.interface()->isServiceRegistered(QStringLiteral("kestro.Readout"));
    }
    show(QStringLiteral("RAM 43%"));
    ASSERT_TRUE(prints("RAM 42%\nRAM 43%\n"));

    EXPECT_LE(sleeps(process) - before, 4);
}

TEST_F(KestroReadoutTest, FollowsTheMemoryForWaybar) {
    figures.memoryPercent = 42;
    startKestro();
    start({QStringLiteral("--waybar")});
    const QByteArray rest = R"("tooltip":"Kestro: RAM 42%","class":["balanced"])";
    const QByteArray first = "{\"text\":\"RAM 42%\"," + rest + ",\"percentage\":42}\n";
    ASSERT_TRUE(prints(first));

    figures.memoryPercent = 43;
    service->readoutDidUpdate();
    const QByteArray second = "{\"text\":\"RAM 42%\"," + rest + ",\"percentage\":43}\n";
    ASSERT_TRUE(prints(first + second));

    figures.memoryPercent.reset();
    service->readoutDidUpdate();
    EXPECT_TRUE(prints(first + second + "{\"text\":\"RAM 42%\"," + rest + "}\n"));
}

TEST_F(KestroReadoutTest, PrintsThePartsForAWidget) {
    readout.hasSymbol = true;
    startKestro();
    start({QStringLiteral("--json")});
    const QByteArray rest = R"("widest_text":"RAM 100%","tooltip":"Kestro: RAM 42%",)";
    const QByteArray first = R"({"text":"RAM 42%",)" + rest +
                             R"("symbol":"kestro-symbolic","power_mode":"balanced","keep_awake":false})" + '\n';
    ASSERT_TRUE(prints(first));

    readout.hasSymbol = false;
    service->readoutDidUpdate();
    EXPECT_TRUE(prints(first + R"({"text":"RAM 42%",)" + rest +
                       R"("symbol":"","power_mode":"balanced","keep_awake":false})" + '\n'));
}

TEST_F(KestroReadoutTest, KeepsTheProtocolOfI3barWhileKestroIsNotRunning) {
    start({QStringLiteral("--i3bar")});

    EXPECT_TRUE(prints("{\"version\":1,\"stop_signal\":0}\n[\n[],\n"));
}

TEST_F(KestroReadoutTest, IgnoresChangesFromOtherPrograms) {
    startKestro();
    start({});
    ASSERT_TRUE(prints("RAM 42%\n"));

    QDBusConnection forger = bus.connect();
    const QStringList names = forger.interface()->registeredServiceNames().value();
    for (const QString& name : names) {
        if (!name.startsWith(QLatin1Char(':'))) {
            continue;
        }
        QDBusMessage forged = QDBusMessage::createTargetedSignal(name, QStringLiteral("/kestro/Readout"),
                                                                 QStringLiteral("org.freedesktop.DBus.Properties"),
                                                                 QStringLiteral("PropertiesChanged"));
        forged.setArguments({QStringLiteral("kestro.Readout"),
                             QVariantMap{{QStringLiteral("Text"), QStringLiteral("forged")}}, QStringList()});
        forger.send(forged);
    }
    forger.interface()->isServiceRegistered(QStringLiteral("kestro.Readout"));
    show(QStringLiteral("RAM 43%"));

    EXPECT_TRUE(prints("RAM 42%\nRAM 43%\n"));
}

TEST_F(KestroReadoutTest, EndsQuietlyWithItsReader) {
    startKestro();

    EXPECT_EQ(runUntilTheReaderEnds(QStringLiteral("head -n 1"), {}), 0);

    EXPECT_EQ(output, "RAM 42%\n");
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(KestroReadoutTest, PrintsOnce) {
    startKestro();

    EXPECT_EQ(run({QStringLiteral("--once")}), 0);
    EXPECT_EQ(output, "RAM 42%\n");
    EXPECT_EQ(run({QStringLiteral("--once"), QStringLiteral("--genmon")}), 0);
    EXPECT_TRUE(output.startsWith("<txt>RAM 42%</txt>"));
}

TEST_F(KestroReadoutTest, PrintsOneEmptyLineWithoutKestro) {
    EXPECT_EQ(run({QStringLiteral("--once")}), 1);
    EXPECT_EQ(output, "\n");
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(KestroReadoutTest, PrintsOneEmptyLineForAHungKestro) {
    test::ScriptedKestro kestro(bus);
    kestro.isHung = true;
    kestro.appear();

    EXPECT_EQ(run({QStringLiteral("--once")}), 1);

    EXPECT_EQ(kestro.calls, QStringList{QStringLiteral("GetAll")});
    EXPECT_EQ(output, "\n");
}

TEST_F(KestroReadoutTest, EndsOnceTheLineDiffersFromTheOneGiven) {
    startKestro();
    EXPECT_EQ(run({QStringLiteral("--after"), QStringLiteral("RAM 41%")}), 0);
    EXPECT_EQ(output, "RAM 42%\n");

    output.clear();
    const QProcess& process = start({QStringLiteral("--after"), QStringLiteral("RAM 42%")});
    service->readoutDidUpdate();
    show(QStringLiteral("RAM 43%"));
    ASSERT_TRUE(waitUntil([&] { return process.state() == QProcess::NotRunning; }));
    EXPECT_EQ(output, "RAM 43%\n");
}

TEST_F(KestroReadoutTest, IsTheHostAsLongAsItRuns) {
    startKestro();
    QProcess& process = start({QStringLiteral("--host"), QStringLiteral("--silent")});
    ASSERT_TRUE(waitUntil([&] { return hosted == std::vector<bool>{true}; }));

    process.kill();

    EXPECT_TRUE(waitUntil([&] { return hosted == (std::vector<bool>{true, false}); }));
    EXPECT_TRUE(output.isEmpty());
}

TEST_F(KestroReadoutTest, EndsWithAReaderThatItNeverWritesTo) {
    startKestro();

    EXPECT_EQ(runUntilTheReaderEnds(QStringLiteral("true"), {QStringLiteral("--silent")}), 0);
}

TEST_F(KestroReadoutTest, SendsRequests) {
    startKestro();

    EXPECT_EQ(run({QStringLiteral("--show"), QStringLiteral("popover")}), 0);
    EXPECT_EQ(run({QStringLiteral("--show"), QStringLiteral("dashboard")}), 0);
    EXPECT_EQ(run({QStringLiteral("--show"), QStringLiteral("settings")}), 0);
    EXPECT_EQ(run({QStringLiteral("--toggle-keep-awake")}), 0);

    EXPECT_TRUE(waitUntil([&] { return popovers == 1 && dashboards == 1 && settings == 1 && keepAwakes == 1; }));
}

TEST_F(KestroReadoutTest, ReportsARequestThatFails) {
    EXPECT_EQ(run({QStringLiteral("--show"), QStringLiteral("dashboard")}), 1);
    EXPECT_TRUE(errors.startsWith("kestro-readout: "));

    bus.kill();
    EXPECT_EQ(run({QStringLiteral("--show"), QStringLiteral("dashboard")}), 1);
    EXPECT_TRUE(errors.startsWith("kestro-readout: "));
}

TEST_F(KestroReadoutTest, ExplainsItself) {
    EXPECT_EQ(run({QStringLiteral("--help")}), 0);
    EXPECT_TRUE(output.startsWith("Usage: kestro-readout"));
    EXPECT_EQ(run({QStringLiteral("--version")}), 0);
    EXPECT_TRUE(output.startsWith("kestro-readout "));
    EXPECT_EQ(run({QStringLiteral("--unknown")}), 2);
    EXPECT_TRUE(errors.contains("--unknown"));
    EXPECT_TRUE(output.isEmpty());
}

}  // namespace
}  // namespace kestro
