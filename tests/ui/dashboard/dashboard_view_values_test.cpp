#include "tests/ui/controls/view_test.h"
#include "tests/ui/dashboard/dashboard_fixture.h"

#include <QAccessible>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace kestro {
namespace {

TEST_F(DashboardViewTest, SaysWhichFileSystemTheStorageIs) {
    make([](SimulatedMac& mac) { mac.fileSystem.mount = FileSystemMount{"/var", "/dev/nvme0n1p3", "btrfs"}; });
    show(1260, 480);

    const auto rows = section<MemorySection>().findChildren<RuledIndexRow*>();
    const auto gauges = section<MemorySection>().findChildren<MetricGauge*>();

    EXPECT_EQ(rows.back()->help(), QStringLiteral("/var on /dev/nvme0n1p3 (btrfs)"));
    EXPECT_EQ(gauges.back()->help(), QStringLiteral("/var on /dev/nvme0n1p3 (btrfs)"));
    EXPECT_EQ(rows.front()->help(), QString());
}

TEST_F(DashboardViewTest, ShowsTheValuesOfTheMachine) {
    make();
    show(1260, 480);

    EXPECT_EQ(rowValue(QStringLiteral("Local IP")), QStringLiteral("192.168.1.24"));
    EXPECT_EQ(rowValue(QStringLiteral("Battery")), QStringLiteral("87%"));
    EXPECT_EQ(rowValue(QStringLiteral("Swap")), QStringLiteral("0.6 of 2.0 GB"));
    EXPECT_EQ(rowValue(QStringLiteral("Power Mode")), QStringLiteral("AUTO"));
}

TEST_F(DashboardViewTest, ShowsTemperaturesInCelsiusRegardlessOfTheUnit) {
    make([](SimulatedMac& mac) { mac.freeze(); });
    machine_->settings().temperatureUnit.set(TemperatureUnit::fahrenheit);
    show(1260, 480);

    EXPECT_TRUE(rowValue(QStringLiteral("SoC Junction Temp")).endsWith(QStringLiteral("°C")));
}

TEST_F(DashboardViewTest, DoesNoWorkWhileHidden) {
    make();
    show(1260, 480);
    view_->hide();
    const QString before = rowValue(QStringLiteral("Battery"));

    machine_->mac.powerSources.setBattery(15, true);
    machine_->advance(std::chrono::seconds(3));
    EXPECT_EQ(rowValue(QStringLiteral("Battery")), before);
    view_->show();

    EXPECT_EQ(rowValue(QStringLiteral("Battery")), QStringLiteral("15%"));
}

TEST_F(DashboardViewTest, DoesNoWorkWhileMinimisedAndCatchesUpWhenRestored) {
    make();
    show(1260, 480);
    view_->setWindowState(Qt::WindowMinimized);
    QApplication::processEvents();
    ASSERT_TRUE(view_->isMinimized());
    const QString before = rowValue(QStringLiteral("Battery"));

    machine_->mac.powerSources.setBattery(15, true);
    machine_->advance(std::chrono::seconds(3));
    EXPECT_EQ(rowValue(QStringLiteral("Battery")), before);
    view_->setWindowState(Qt::WindowNoState);
    QApplication::processEvents();

    EXPECT_EQ(rowValue(QStringLiteral("Battery")), QStringLiteral("15%"));
}

TEST_F(DashboardViewTest, ShowsCurveTargetsAsHelpWithMoreThanTwoFans) {
    make([](SimulatedMac& mac) { mac.smc.setFans(std::array{1000.0F, 1100.0F, 1200.0F}); });
    show(1260, 480);
    const auto helps = [this] {
        QStringList texts;
        for (const RuledIndexRow* row : section<CoolingSection>().findChildren<RuledIndexRow*>()) {
            texts.append(row->help());
        }
        return texts.filter(QStringLiteral("target"));
    };
    EXPECT_TRUE(helps().isEmpty());

    machine_->fanManager().selectProfile(FanProfile::custom);
    machine_->advance(std::chrono::seconds(3));

    const auto target = [](double rpm) { return QStringLiteral("target %1 RPM").arg(static_cast<int>(rpm)); };
    EXPECT_EQ(helps(), (QStringList{target(machine_->fanManager().evaluatedLeftTargetRPM.get()),
                                    target(machine_->fanManager().evaluatedRightTargetRPM.get())}));
    machine_->fanManager().selectProfile(FanProfile::normal);
    EXPECT_TRUE(helps().isEmpty());
}

TEST_F(DashboardViewTest, ShowsWhatTheMachineCallsItsFansAsHelp) {
    make([](SimulatedMac& mac) {
        mac.smc.setRaw("F0ID", "ch8*", std::vector<std::uint8_t>{'E', 'x', 'h', 'a', 'u', 's', 't', ' '});
    });
    show(1260, 480);
    machine_->advance(std::chrono::seconds(3));

    QStringList helps;
    for (const MetricGauge* gauge : section<CoolingSection>().findChildren<MetricGauge*>()) {
        helps.append(gauge->help());
    }
    EXPECT_EQ(helps, (QStringList{QStringLiteral("Exhaust"), QString()}));
}

TEST_F(DashboardViewTest, RepaintsOnlyTheValueThatChanged) {
    make([](SimulatedMac& mac) { mac.freeze(); });
    show(1260, 480);
    PaintedRegion region(*view_);

    machine_->advance(std::chrono::milliseconds(1100));
    QApplication::processEvents();
    EXPECT_TRUE(region.painted.isEmpty()) << "an unchanged sample repaints nothing";
    machine_->mac.powerSources.setBattery(61, false);
    machine_->advance(std::chrono::milliseconds(1000));
    QApplication::processEvents();

    const IOSection& io = section<IOSection>();
    EXPECT_FALSE(region.painted.isEmpty());
    EXPECT_TRUE(io.geometry().contains(region.painted.boundingRect()));
    EXPECT_LT(region.painted.boundingRect().height(), 40);
}

TEST_F(DashboardViewTest, ExposesItsValues) {
    make([](SimulatedMac& mac) { mac.freeze(); });
    show(1260, 480);

    std::vector<std::string> names;
    for (View* one : view_->findChildren<View*>()) {
        if (one->isVisible()) {
            names.push_back(QAccessible::queryAccessibleInterface(one)->text(QAccessible::Name).toStdString());
        }
    }

    const auto speaks = [&](const std::string& text) {
        return std::ranges::any_of(names, [&](const std::string& name) { return name.find(text) == 0; });
    };
    EXPECT_TRUE(speaks("CPU load, "));
    EXPECT_TRUE(speaks("CPU history, now "));
    EXPECT_TRUE(speaks("Download history, now "));
    EXPECT_TRUE(speaks("Left Fan, 1420 RPM of 7300"));
    EXPECT_TRUE(speaks("Memory, 41 percent, "));
    EXPECT_TRUE(speaks("Battery, 87%, 4h 12m remaining"));
    EXPECT_TRUE(speaks("clang, "));
    EXPECT_TRUE(speaks("Profile, Normal (Auto)"));
    EXPECT_TRUE(speaks("Temperatures, Cool"));
    EXPECT_TRUE(speaks("Memory pressure, Normal"));
    EXPECT_TRUE(speaks("Interface, en0"));
    EXPECT_TRUE(speaks("Download, "));
}

TEST_F(DashboardViewTest, GroupsItsValuesBySectionWithoutDuplicates) {
    make([](SimulatedMac& mac) { mac.freeze(); });
    show(1260, 480);

    for (DashboardSection* one : view_->findChildren<DashboardSection*>()) {
        QAccessibleInterface* group = QAccessible::queryAccessibleInterface(one);
        EXPECT_EQ(group->role(), QAccessible::Grouping);
        std::vector<QString> names;
        for (int i = 0; i < group->childCount(); ++i) {
            QAccessibleInterface* child = group->child(i);
            if (!child->state().invisible) {
                names.push_back(child->text(QAccessible::Name));
                EXPECT_FALSE(names.back().isEmpty()) << group->text(QAccessible::Name).toStdString();
            }
        }
        std::ranges::sort(names);
        EXPECT_EQ(std::ranges::adjacent_find(names), names.end()) << group->text(QAccessible::Name).toStdString();
        EXPECT_FALSE(std::ranges::binary_search(names, QStringLiteral("Download")));
        EXPECT_FALSE(std::ranges::binary_search(names, QStringLiteral("User")));
    }
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&section<IOSection>())->text(QAccessible::Name),
              QStringLiteral("I/O & Power"));
}

}  // namespace
}  // namespace kestro
