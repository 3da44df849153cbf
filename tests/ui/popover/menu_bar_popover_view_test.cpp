#include "ui/popover/menu_bar_popover_view.h"

#include "tests/ui/popover/popover_fixture.h"
#include "ui/menus/menu_button.h"

#include <QMenu>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>

namespace kestro {
namespace {

TEST_F(PopoverTest, ExposesEverythingInReadingOrder) {
    services.engine().setUIActive(true);
    show();

    const QStringList names = spoken();

    const auto place = [&](const char* beginning) {
        for (qsizetype i = 0; i < names.size(); ++i) {
            if (names[i].startsWith(QString::fromUtf8(beginning))) {
                return i;
            }
        }
        ADD_FAILURE() << "no accessible name starts with " << beginning;
        return qsizetype{-1};
    };
    qsizetype before = -1;
    for (const char* part :
         {"KESTRO", "Settings", "Open Dashboard", "CPU & Clusters, ", "Performance, ", "Efficiency, ",
          "Unified Memory, ", "Used, 13.4 GB of 32.0 GB", "Dual Fan RPM & Thermals, SoC ", "Left Fan, ",
          "Right Fan, ", "Peak Die, ", "Profile: ", "Download, ", "Upload, ", "Storage, ", "Battery, 87%",
          "Keep Awake", "Quit"}) {
        const qsizetype here = place(part);
        EXPECT_GT(here, before) << part;
        before = here;
    }
}

TEST_F(PopoverTest, ChipsAndQuitCallTheirActions) {
    show();

    button(QStringLiteral("Settings"))->click();
    button(QStringLiteral("Open Dashboard"))->click();
    button(QStringLiteral("Quit"))->click();

    EXPECT_EQ(calls,
              (QStringList{QStringLiteral("settings"), QStringLiteral("dashboard"), QStringLiteral("quit")}));
    EXPECT_EQ(button(QStringLiteral("Settings"))->help(), QStringLiteral("Settings"));
    EXPECT_EQ(button(QStringLiteral("Open Dashboard"))->help(), QStringLiteral("Open Full Zero-Scroll Dashboard"));
}

TEST_F(PopoverTest, CoolingFollowsTheNumberOfFans) {
    show();
    services.mac.smc.setFans({});
    sample();
    EXPECT_TRUE(line(QStringLiteral("Acoustics & Thermals (Passive)")));
    EXPECT_EQ(line(QStringLiteral("Fanless"))->label(),
              QStringLiteral("Fanless Acoustic Architecture · 0.0 dB Silent Dissipation"));
    EXPECT_EQ(line(QStringLiteral("Fanless"))->symbol(), QStringLiteral("leaf.fill"));

    services.mac.smc.setFans(std::array{1830.0F});
    sample();
    EXPECT_TRUE(line(QStringLiteral("Fan RPM & Thermals")));

    services.mac.smc.setFans(std::array{1830.0F, 900.0F, 850.0F, 2000.0F});
    sample();
    EXPECT_TRUE(line(QStringLiteral("Dual Fan RPM & Thermals")));
    EXPECT_THAT(spoken(), testing::Not(testing::Contains(QStringLiteral("Fanless"))));
    int fans = 0;
    for (const ReadoutLine* fan : view->findChildren<ReadoutLine*>()) {
        fans += fan->symbol() == QStringLiteral("fanblades") && !fan->value().startsWith(QStringLiteral("SoC"));
    }
    EXPECT_EQ(fans, 4);
}

TEST_F(PopoverTest, FanSpeedsAndTemperaturesUseTheChosenUnits) {
    show();
    services.mac.smc.setFans(std::array{1420.0F, 7820.0F});
    setTemperature(48);
    EXPECT_EQ(line(QStringLiteral("Right Fan"))->value(), QStringLiteral("7.8k"));
    EXPECT_EQ(line(QStringLiteral("Peak Die"))->value(), QStringLiteral("48.0°C"));

    services.settings().fanSpeedUnit.set(FanSpeedUnit::rawRPM);
    services.settings().temperatureUnit.set(TemperatureUnit::fahrenheit);

    EXPECT_TRUE(line(QStringLiteral("Right Fan"))->value().endsWith(QStringLiteral(" RPM")));
    EXPECT_EQ(line(QStringLiteral("Peak Die"))->value(), QStringLiteral("118.4°F"));
    EXPECT_EQ(line(QStringLiteral("Dual Fan"))->value(), QStringLiteral("SoC 118.4°F"));
}

TEST_F(PopoverTest, ProcessorTemperatureIsCriticalAboveEighty) {
    show();
    setTemperature(80.0);
    EXPECT_EQ(line(QStringLiteral("Dual Fan"))->valueInk(), Ink(KestroTheme::textPrimary));

    setTemperature(80.1);
    EXPECT_EQ(line(QStringLiteral("Dual Fan"))->valueInk(), Ink(KestroTheme::accentCritical));
}

TEST_F(PopoverTest, StoresAChosenProfileBeforeApplyingIt) {
    show();
    QStringList order;
    const auto stored = services.settings().fanProfile.subscribe([&](FanProfile profile) {
        const bool isAhead = services.fanManager().currentProfile.get() != profile;
        order.append(isAhead ? QStringLiteral("stored before applied") : QStringLiteral("stored after"));
    });
    const auto applied = services.fanManager().currentProfile.subscribe(
        [&](FanProfile) { order.append(QStringLiteral("applied")); });

    auto* const profile = view->findChild<MenuButton*>();
    profile->click();
    auto* const menu = profile->findChild<QMenu*>();
    ASSERT_TRUE(menu);
    ASSERT_EQ(menu->actions().size(), 5);
    EXPECT_TRUE(menu->actions()[1]->isChecked());
    menu->actions()[3]->trigger();
    menu->close();
    settle();

    EXPECT_EQ(order, (QStringList{QStringLiteral("stored before applied"), QStringLiteral("applied")}));
    EXPECT_EQ(profile->text(), QStringLiteral("Profile: Turbo"));
    EXPECT_EQ(services.settings().fanProfile.get(), FanProfile::turbo);
}

TEST_F(PopoverTest, KeepAwakeChipShowsAndTogglesTheState) {
    show();
    Button* const chip = button(QStringLiteral("Keep Awake"));
    EXPECT_FALSE(chip->isOn());

    services.keepAwake().activate(KeepAwakeDuration::minutes15);
    services.advance(std::chrono::seconds(55));
    settle();
    EXPECT_EQ(chip->text(), QStringLiteral("Awake (14m 05s)"));
    EXPECT_TRUE(chip->isOn());
    EXPECT_LE(chip->geometry().right(), 316);

    chip->click();
    EXPECT_EQ(chip->text(), QStringLiteral("Keep Awake"));
    EXPECT_EQ(services.mac.assertionsHeld(), 0);
}

TEST_F(PopoverTest, KeepAwakeChipSaysWhoHoldsTheLock) {
    show();
    Button* const chip = button(QStringLiteral("Keep Awake"));
    services.keepAwake().activate(KeepAwakeDuration::indefinite);
    services.mac.powerAssertions.setReport({PowerAssertionReport::State::held, {"KDE", "X11"}});
    settle();
    EXPECT_EQ(chip->help(), QStringLiteral("Display & System · held by KDE, X11"));
    EXPECT_EQ(chip->accessibleInfo().description, chip->help());

    services.mac.powerAssertions.setReport({PowerAssertionReport::State::lost, {}});
    settle();

    EXPECT_EQ(chip->text(), QStringLiteral("Not Held (Active (∞))"));
    EXPECT_LE(chip->geometry().right(), 316);
    EXPECT_EQ(chip->help(), QStringLiteral("Not held: the lock was lost, and will be requested again."));
}

TEST_F(PopoverTest, RepaintsNothingWhenASampleChangesNothing) {
    show();
    sample();
    view->painted = {};

    sample();

    EXPECT_TRUE(view->painted.isEmpty());
}

TEST_F(PopoverTest, RepaintsOnlyTheRectangleOfAChangedValue) {
    show();
    sample();
    view->painted = {};
    services.mac.powerSources.setBattery(86, false);

    sample();

    const QRect battery = line(QStringLiteral("Battery"))->geometry();
    EXPECT_FALSE(view->painted.isEmpty());
    EXPECT_TRUE(battery.contains(view->painted.boundingRect()));
}

TEST_F(PopoverTest, ShowsNoLoadAndNoRatesThatNoReadingMeasured) {
    show();
    EXPECT_EQ(line(QStringLiteral("CPU & Clusters"))->value(), QStringLiteral("-- Total"));
    EXPECT_EQ(line(QStringLiteral("Performance"))->value(), QStringLiteral("--"));
    EXPECT_EQ(line(QStringLiteral("Download"))->label(), QStringLiteral("--"));
    EXPECT_EQ(line(QStringLiteral("Upload"))->label(), QStringLiteral("--"));

    sample();

    EXPECT_EQ(line(QStringLiteral("CPU & Clusters"))->value(), QStringLiteral("0% Total"));
    EXPECT_EQ(line(QStringLiteral("Performance"))->value(), QStringLiteral("0%"));
    EXPECT_EQ(line(QStringLiteral("Download"))->label(), QStringLiteral("0 B/s"));
}

TEST_F(PopoverTest, DoesNoWorkWhileHiddenAndIsUpToDateWhenShown) {
    show();
    view->hide();
    const QString before = line(QStringLiteral("Battery"))->label();
    services.mac.powerSources.setBattery(12, false);
    sample();
    EXPECT_EQ(line(QStringLiteral("Battery"))->label(), before);

    show();
    EXPECT_EQ(line(QStringLiteral("Battery"))->label(), QStringLiteral("12%"));
}

TEST_F(PopoverTest, KeyboardReachesEveryControlInReadingOrder) {
    show();
    QStringList reached;
    const QWidget* control = view.get();
    for (int i = 0; i < 60; ++i) {
        control = control->nextInFocusChain();
        if (control == view.get()) {
            break;
        }
        if (control->focusPolicy() & Qt::TabFocus) {
            reached.append(static_cast<const Control*>(control)->accessibleInfo().name);
        }
    }

    EXPECT_EQ(reached, (QStringList{QStringLiteral("Settings"), QStringLiteral("Open Dashboard"),
                                    QStringLiteral("Profile: Normal (Auto)"), QStringLiteral("Keep Awake"),
                                    QStringLiteral("Quit")}));
}

}  // namespace
}  // namespace kestro
