#include "tests/ui/settings/settings_view_test.h"

#include "ui/controls/badge.h"
#include "ui/controls/tab_strip.h"

#include <QElapsedTimer>
#include <QTest>

namespace kestro {
namespace {

class SettingsViewTest : public SettingsViewFixture {
protected:
    TabStrip& strip() { return *view_->findChild<TabStrip*>(); }
};

TEST_F(SettingsViewTest, CreatesOnlyTheStoredTab) {
    open(SettingsTab::power);

    EXPECT_EQ(strip().chosen(), 3);
    EXPECT_NE(view_->content(SettingsTab::power), nullptr);
    EXPECT_EQ(view_->content(SettingsTab::menubar), nullptr);
    EXPECT_EQ(view_->content(SettingsTab::cooling), nullptr);
}

TEST_F(SettingsViewTest, StoresTheChosenTab) {
    open(SettingsTab::menubar);

    press(strip(), Qt::Key_Right);

    EXPECT_EQ(settings().selectedSettingsTab.get(), SettingsTab::keepAwake);
    EXPECT_EQ(restarted().selectedSettingsTab.get(), SettingsTab::keepAwake);
    EXPECT_TRUE(view_->content(SettingsTab::keepAwake)->isVisible());
    EXPECT_FALSE(view_->content(SettingsTab::menubar)->isVisible());
}

TEST_F(SettingsViewTest, FollowsATabSetElsewhere) {
    open(SettingsTab::menubar);

    settings().selectedSettingsTab.set(SettingsTab::sensors);

    EXPECT_EQ(strip().chosen(), 6);
    EXPECT_TRUE(view_->content(SettingsTab::sensors)->isVisible());
}

TEST_F(SettingsViewTest, ShowsATabThatWasSetWhileHidden) {
    open(SettingsTab::menubar);
    view_->hide();
    settings().selectedSettingsTab.set(SettingsTab::dashboard);
    EXPECT_EQ(view_->content(SettingsTab::dashboard), nullptr);

    view_->show();

    EXPECT_TRUE(view_->content(SettingsTab::dashboard)->isVisible());
}

TEST_F(SettingsViewTest, CyclesThroughTheTabsWithControlTab) {
    open(SettingsTab::sensors);
    view_->activateWindow();
    QApplication::processEvents();
    // Sends a key the way the keyboard does: through the shortcuts to the focused control.
    const auto type = [this](Qt::KeyboardModifiers modifiers, Qt::Key key) {
        QTest::keyClick(view_->windowHandle(), key, modifiers);
    };

    type(Qt::ControlModifier, Qt::Key_Tab);
    const SettingsTab next = settings().selectedSettingsTab.get();
    type(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Tab);

    EXPECT_EQ(next, SettingsTab::menubar);
    EXPECT_EQ(settings().selectedSettingsTab.get(), SettingsTab::sensors);
}

TEST_F(SettingsViewTest, FadesOneTabIntoTheNext) {
    open(SettingsTab::menubar);
    motion::setReduced(false);
    QWidget* before = view_->content(SettingsTab::menubar);

    settings().selectedSettingsTab.set(SettingsTab::power);
    EXPECT_TRUE(before->isVisible());
    EXPECT_TRUE(view_->content(SettingsTab::power)->isVisible());

    settings().selectedSettingsTab.set(SettingsTab::sensors);
    EXPECT_FALSE(before->isVisible());
    EXPECT_TRUE(view_->content(SettingsTab::power)->isVisible());

    QElapsedTimer timer;
    timer.start();
    while (view_->content(SettingsTab::power)->isVisible() && timer.elapsed() < 5000) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    EXPECT_FALSE(view_->content(SettingsTab::power)->isVisible());
    EXPECT_TRUE(view_->content(SettingsTab::sensors)->isVisible());
}

TEST_F(SettingsViewTest, MovesTheFocusToTheStripWhenTheFocusedTabGoes) {
    open(SettingsTab::dashboard);
    view_->activateWindow();
    QApplication::processEvents();
    row("Compute & Silicon Core Topology").setFocus();
    ASSERT_EQ(view_->focusWidget(), &row("Compute & Silicon Core Topology"));

    settings().selectedSettingsTab.set(SettingsTab::power);

    EXPECT_EQ(view_->focusWidget(), &strip());
}

TEST_F(SettingsViewTest, ClosesWithItsChip) {
    open(SettingsTab::menubar);

    click(button("Close"));

    EXPECT_EQ(closed_, 1);
}

TEST_F(SettingsViewTest, DoesNothingWhileHiddenAndCatchesUp) {
    open(SettingsTab::sensors);
    view_->hide();
    machine_->mac.powerSources.setBattery(40, true);
    machine_->advance(std::chrono::seconds(5));
    const auto* value = [this]() -> const TextLabel* {
        for (const TextLabel* label : view_->findChildren<TextLabel*>()) {
            if (label->text() == QStringLiteral("4h 12m remaining")) {
                return label;
            }
        }
        return nullptr;
    }();
    ASSERT_NE(value, nullptr);

    view_->show();

    EXPECT_EQ(value->text(), QStringLiteral("Charging (40%)"));
}

TEST_F(SettingsViewTest, DoesNothingWhileMinimisedAndCatchesUp) {
    open(SettingsTab::power);
    view_->setWindowState(Qt::WindowMinimized);
    QApplication::processEvents();

    machine_->mac.powerSources.setBattery(12, true);
    machine_->advance(std::chrono::seconds(3));
    EXPECT_TRUE(shows("87%"));

    view_->setWindowState(Qt::WindowNoState);
    QApplication::processEvents();
    EXPECT_TRUE(shows("12%"));
}

TEST_F(SettingsViewTest, ShowsANewPaletteInEveryViewOfTheTab) {
    for (const SettingsTab tab : allCases<SettingsTab>()) {
        open(tab);
        std::vector<std::pair<QWidget*, std::unique_ptr<PaintCounter>>> counters;
        for (QWidget* widget : view_->findChildren<QWidget*>()) {
            if (widget->isVisible() && !widget->visibleRegion().isEmpty()) {
                counters.emplace_back(widget, std::make_unique<PaintCounter>(*widget));
            }
        }
        ASSERT_GT(counters.size(), 10U);

        settings().themePalette.set(ThemePalette::lilac);
        QApplication::processEvents();

        for (const auto& [widget, counter] : counters) {
            EXPECT_GT(counter->count, 0) << rawValue(tab) << " " << widget->metaObject()->className();
        }
        view_.reset();
    }
}

TEST_F(SettingsViewTest, ListsEveryInterfaceOnTheSensorsTab) {
    open(SettingsTab::sensors);

    for (const char* text : {"AUTHENTIC HARDWARE INTERFACES", "Hardware Platform", "AppleSMC Interface",
                             "Direct IOServiceOpen (Client 0)", "IOHIDEventSystemClient", "Host Processor Info",
                             "Mach VM Subsystem", "64-bit Statistics + Swap Usage", "IOPowerSources"}) {
        EXPECT_TRUE(shows(text)) << text;
    }
    std::vector<QString> badges;
    for (const Badge* badge : view_->findChildren<Badge*>()) {
        badges.push_back(badge->text());
    }
    EXPECT_EQ(badges,
              (std::vector<QString>{QStringLiteral("Silicon Verified"), QStringLiteral("2 Active Turbines"),
                                    QStringLiteral("Active"), QStringLiteral("Active"), QStringLiteral("Active"),
                                    QStringLiteral("IOPM Verified")}));
}

TEST_F(SettingsViewTest, SummarizesMachinesWithUpToOneFan) {
    const auto badgeWith = [this](std::span<const float> speeds) {
        open(SettingsTab::sensors, [speeds](SimulatedMac& mac) { mac.smc.setFans(speeds); });
        return view_->findChildren<Badge*>().at(1)->text();
    };

    EXPECT_EQ(badgeWith(std::array{1420.0F}), QStringLiteral("1 Active Turbine"));
    EXPECT_EQ(badgeWith({}), QStringLiteral("Passive Thermal Dissipation"));
}

TEST_F(SettingsViewTest, CountsCoresAndSensors) {
    open(SettingsTab::sensors);
    const auto& cpu = machine_->engine().cpu.get();
    const std::string cores =
        std::to_string(cpu.coreCount) + " Total Silicon Cores (" + cpu.clusterDescription() + ")";
    const std::string nodes =
        std::to_string(machine_->engine().thermals.get().sensorCount) + " Silicon Thermal Nodes";

    EXPECT_TRUE(shows(cores.c_str()));
    EXPECT_TRUE(shows(nodes.c_str()));
}

TEST_F(SettingsViewTest, NamesOnlyClustersThatExist) {
    open(SettingsTab::sensors, [](SimulatedMac& mac) {
        mac.machHost.cores.resize(2);
        mac.systemControl.integers["hw.perflevel0.physicalcpu"] = 2;
        mac.systemControl.integers.erase("hw.perflevel1.physicalcpu");
    });
    machine_->engine().sampleFull();

    EXPECT_TRUE(shows("2 Total Silicon Cores (2 Performance)"));
}

}  // namespace
}  // namespace kestro
