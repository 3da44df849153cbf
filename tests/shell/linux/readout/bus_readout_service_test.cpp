#include "shell/linux/readout/bus_readout_service.h"

#include "shell/linux/readout/readout_properties.h"
#include "tests/shell/linux/readout/readout_panel.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>

#include <gtest/gtest.h>

#include <memory>

namespace kestro {
namespace {

using BusReadoutServiceTest = test::ReadoutServiceFixture;
using test::ReadoutPanel;

QStringList names(const QVariantMap& properties) {
    return properties.keys();
}

BusKeepAwake keepAwake(const QVariant& value) {
    return qdbus_cast<BusKeepAwake>(value);
}

TEST_F(BusReadoutServiceTest, ServesTheReadout) {
    EXPECT_EQ(panel.property("Text"), QVariant(QStringLiteral("RAM 42%")));
    EXPECT_EQ(panel.property("WidestText"), QVariant(QStringLiteral("RAM 100%")));
    EXPECT_EQ(panel.property("ToolTip"), QVariant(QStringLiteral("Kestro: RAM 42%")));
    EXPECT_EQ(panel.property("Symbol"), QVariant(QStringLiteral("kestro-symbolic")));
    EXPECT_EQ(panel.property("PowerMode"), QVariant(QStringLiteral("balanced")));
    EXPECT_EQ(keepAwake(panel.property("KeepAwake")), (BusKeepAwake{false, 0}));
    EXPECT_EQ(panel.property("Hosted"), QVariant(false));
}

TEST_F(BusReadoutServiceTest, ServesThePowerModeInTheWordsOfTheDaemon) {
    readout.powerMode = SystemPowerMode::lowPower;
    EXPECT_EQ(panel.property("PowerMode"), QVariant(QStringLiteral("power-saver")));

    readout.powerMode = SystemPowerMode::highPower;
    EXPECT_EQ(panel.property("PowerMode"), QVariant(QStringLiteral("performance")));
}

TEST_F(BusReadoutServiceTest, ServesTheStateOfKeepAwake) {
    readout.isKeepAwakeActive = true;
    EXPECT_EQ(keepAwake(panel.property("KeepAwake")), (BusKeepAwake{true, -1}));

    readout.keepAwakeRemainingSeconds = 95;
    EXPECT_EQ(keepAwake(panel.property("KeepAwake")), (BusKeepAwake{true, 95}));
}

TEST_F(BusReadoutServiceTest, ServesEveryFigure) {
    figures = {.memoryPercent = 42,
               .processorPercent = 18,
               .performanceClusterPercent = 24,
               .efficiencyClusterPercent = 8,
               .temperatureCelsius = 48,
               .fanSpeedsRpm = std::vector<std::int64_t>{1420, 1500},
               .downloadBytesPerSecond = 1'200'000,
               .uploadBytesPerSecond = 240'000,
               .batteryPercent = 98,
               .isBatteryCharging = true,
               .diskFreeBytes = 512'000'000'000};

    const QVariantMap all = panel.all();

    EXPECT_EQ(all.value(QStringLiteral("ProcessorPercent")), QVariant(18LL));
    EXPECT_EQ(all.value(QStringLiteral("PerformanceClusterPercent")), QVariant(24LL));
    EXPECT_EQ(all.value(QStringLiteral("EfficiencyClusterPercent")), QVariant(8LL));
    EXPECT_EQ(all.value(QStringLiteral("TemperatureCelsius")), QVariant(48LL));
    EXPECT_EQ(qdbus_cast<QList<qlonglong>>(all.value(QStringLiteral("FanSpeedsRpm"))),
              (QList<qlonglong>{1420, 1500}));
    EXPECT_EQ(all.value(QStringLiteral("DownloadBytesPerSecond")), QVariant(1'200'000LL));
    EXPECT_EQ(all.value(QStringLiteral("UploadBytesPerSecond")), QVariant(240'000LL));
    EXPECT_EQ(all.value(QStringLiteral("BatteryPercent")), QVariant(98LL));
    EXPECT_EQ(all.value(QStringLiteral("BatteryCharging")), QVariant(true));
    EXPECT_EQ(all.value(QStringLiteral("DiskFreeBytes")), QVariant(512'000'000'000LL));
}

TEST_F(BusReadoutServiceTest, HasNoFigureThatNothingHasMeasured) {
    EXPECT_EQ(panel.property("MemoryPercent"), QVariant(42LL));
    EXPECT_FALSE(panel.property("ProcessorPercent").isValid());
    EXPECT_FALSE(panel.all().contains(QStringLiteral("ProcessorPercent")));
}

TEST_F(BusReadoutServiceTest, DescribesWhatItServes) {
    const QDBusMessage reply =
        panel.client().call(ReadoutPanel::name(), ReadoutPanel::path(),
                            QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"));
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage);
    const QString text = reply.arguments().at(0).toString();

    EXPECT_TRUE(text.contains(QStringLiteral("EmitsChangedSignal\" value=\"false\"")));
    for (const QString& name : names(panel.all())) {
        EXPECT_TRUE(text.contains(QStringLiteral("<property name=\"%1\"").arg(name))) << name.toStdString();
    }
    for (const auto& property : readout_properties::figures()) {
        EXPECT_TRUE(text.contains(QStringLiteral("<property name=\"%1\"").arg(property.name)))
            << property.name.toStdString();
    }
    for (const char* name : {"Follow", "Unfollow", "RegisterHost", "UnregisterHost", "TogglePopover",
                             "ShowDashboard", "ShowSettings", "ToggleKeepAwake"}) {
        EXPECT_TRUE(text.contains(QStringLiteral("<method name=\"%1\"").arg(QString::fromLatin1(name)))) << name;
    }
}

TEST_F(BusReadoutServiceTest, ServesTheMenu) {
    const QString menu = panel.property("Menu").value<QDBusObjectPath>().path();

    const QDBusMessage reply =
        panel.client().call(ReadoutPanel::name(), menu, QStringLiteral("com.canonical.dbusmenu"),
                            QStringLiteral("GetLayout"), {0, -1, QStringList()});

    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(reply.signature(), QStringLiteral("u(ia{sv}av)"));
}

TEST_F(BusReadoutServiceTest, SendsOnlyWhatHasChanged) {
    ASSERT_TRUE(panel.follow());

    readout.text = QStringLiteral("RAM 43%");
    update(panel);
    update(panel);

    ASSERT_EQ(panel.changes.size(), 1U);
    EXPECT_EQ(panel.changes[0], (QVariantMap{{QStringLiteral("Text"), QStringLiteral("RAM 43%")}}));
    EXPECT_TRUE(panel.losses[0].isEmpty());
}

TEST_F(BusReadoutServiceTest, SendsNothingToProgramsThatOnlyListen) {
    ReadoutPanel listener(bus.address());
    ASSERT_TRUE(panel.follow());

    readout.text = QStringLiteral("RAM 43%");
    update(panel);
    listener.settle();

    EXPECT_EQ(panel.changes.size(), 1U);
    EXPECT_TRUE(listener.changes.empty());
}

TEST_F(BusReadoutServiceTest, ComputesNothingWhileNoProgramFollows) {
    update(panel);
    EXPECT_EQ(readoutsAsked, 0);
    EXPECT_EQ(figuresAsked, 0);

    ASSERT_TRUE(panel.follow());
    panel.call(QStringLiteral("Unfollow"));
    const int before = readoutsAsked;
    readout.text = QStringLiteral("RAM 43%");
    update(panel);

    EXPECT_EQ(readoutsAsked, before);
    EXPECT_TRUE(panel.changes.empty());
}

TEST_F(BusReadoutServiceTest, ComputesNoFiguresForAFollowerOfTheText) {
    ASSERT_TRUE(panel.follow());

    readout.text = QStringLiteral("RAM 43%");
    figures.memoryPercent = 43;
    update(panel);

    EXPECT_EQ(figuresAsked, 0);
    EXPECT_EQ(panel.changes.size(), 1U);
}

TEST_F(BusReadoutServiceTest, SendsEachFollowerItsOwnFigures) {
    ReadoutPanel other(bus.address());
    ASSERT_TRUE(panel.follow({QStringLiteral("MemoryPercent")}));
    ASSERT_TRUE(other.follow({QStringLiteral("ProcessorPercent")}));

    figures.memoryPercent = 43;
    figures.processorPercent = 5;
    figures.batteryPercent = 50;
    update(panel);
    other.settle();

    ASSERT_EQ(panel.changes.size(), 1U);
    ASSERT_EQ(other.changes.size(), 1U);
    EXPECT_EQ(panel.changes[0], (QVariantMap{{QStringLiteral("MemoryPercent"), 43LL}}));
    EXPECT_EQ(other.changes[0], (QVariantMap{{QStringLiteral("ProcessorPercent"), 5LL}}));
}

TEST_F(BusReadoutServiceTest, ReportsAFigureThatIsNoLongerMeasured) {
    ASSERT_TRUE(panel.follow({QStringLiteral("MemoryPercent")}));

    figures.memoryPercent.reset();
    update(panel);
    update(panel);

    ASSERT_EQ(panel.losses.size(), 1U);
    EXPECT_EQ(panel.losses[0], QStringList{QStringLiteral("MemoryPercent")});
    EXPECT_TRUE(panel.changes[0].isEmpty());
}

TEST_F(BusReadoutServiceTest, KeepsWhatIsNewsToTheFirstFollowerWhenASecondArrives) {
    ReadoutPanel other(bus.address());
    ASSERT_TRUE(panel.follow({QStringLiteral("MemoryPercent")}));
    figures.memoryPercent = 43;
    readout.text = QStringLiteral("RAM 43%");

    ASSERT_TRUE(other.follow({QStringLiteral("MemoryPercent")}));
    update(panel);

    ASSERT_EQ(panel.changes.size(), 1U);
    EXPECT_EQ(names(panel.changes[0]), (QStringList{QStringLiteral("MemoryPercent"), QStringLiteral("Text")}));
}

TEST_F(BusReadoutServiceTest, SendsTheCountdownOfKeepAwakeOnceAMinute) {
    readout.isKeepAwakeActive = true;
    readout.keepAwakeRemainingSeconds = 125;
    ASSERT_TRUE(panel.follow());

    for (const int seconds : {124, 120, 119, 118, 60, 59}) {
        readout.keepAwakeRemainingSeconds = seconds;
        update(panel);
    }

    ASSERT_EQ(panel.changes.size(), 2U);
    EXPECT_EQ(keepAwake(panel.changes[0].value(QStringLiteral("KeepAwake"))), (BusKeepAwake{true, 119}));
    EXPECT_EQ(keepAwake(panel.changes[1].value(QStringLiteral("KeepAwake"))), (BusKeepAwake{true, 59}));
}

TEST_F(BusReadoutServiceTest, ForgetsAFollowerThatLeavesTheBus) {
    auto leaving = std::make_unique<ReadoutPanel>(bus.address());
    ASSERT_TRUE(leaving->follow());

    leaving.reset();

    EXPECT_TRUE(waitUntil([&] {
        panel.settle();
        const int before = readoutsAsked;
        service.readoutDidUpdate();
        return readoutsAsked == before;
    }));
}

TEST_F(BusReadoutServiceTest, RefusesUnknownFigures) {
    EXPECT_FALSE(panel.follow({QStringLiteral("Text")}));
    EXPECT_FALSE(panel.follow({QStringLiteral("MemoryPercent"), QString(100'000, QLatin1Char('x'))}));
    EXPECT_FALSE(panel.follow(QStringList(100'000, QStringLiteral("MemoryPercent"))));
    EXPECT_EQ(panel.call(QStringLiteral("Follow"), {1}).type(), QDBusMessage::ErrorMessage);

    readout.text = QStringLiteral("RAM 43%");
    update(panel);
    EXPECT_TRUE(panel.changes.empty());
}

TEST_F(BusReadoutServiceTest, RefusesMoreProgramsThanAnySessionHas) {
    std::vector<std::unique_ptr<ReadoutPanel>> panels;
    for (std::size_t count = 0; count < ReadoutClients::limit; ++count) {
        panels.push_back(std::make_unique<ReadoutPanel>(bus.address()));
        ASSERT_TRUE(panels.back()->follow());
    }

    EXPECT_FALSE(panel.follow());
    EXPECT_EQ(panel.call(QStringLiteral("RegisterHost")).type(), QDBusMessage::ErrorMessage);

    panels.front()->call(QStringLiteral("Unfollow"));
    EXPECT_TRUE(panel.follow());
}

TEST_F(BusReadoutServiceTest, OwnsItsNameWhilePublished) {
    const auto isOwned = [this] {
        return panel.client().connection().interface()->isServiceRegistered(ReadoutPanel::name()).value();
    };
    EXPECT_TRUE(isOwned());

    service.withdraw();

    EXPECT_FALSE(isOwned());
}

TEST_F(BusReadoutServiceTest, BringsNoItemsBackWhenItIsWithdrawn) {
    panel.call(QStringLiteral("RegisterHost"));
    ASSERT_TRUE(waitUntil([&] { return !hosted.empty(); }));

    service.withdraw();
    service.readoutDidUpdate();
    EXPECT_EQ(hosted, std::vector<bool>{true});
    EXPECT_EQ(readoutsAsked, 0);

    service.publish(handlers());
    EXPECT_EQ(hosted, (std::vector<bool>{true, false}));
}

TEST(BusReadoutServiceWithoutABus, DoesNothing) {
    BusReadoutService service(PrivateBus::none(), [](bool) { FAIL(); });

    service.publish({});
    service.readoutDidUpdate();
    service.withdraw();
}

}  // namespace
}  // namespace kestro
