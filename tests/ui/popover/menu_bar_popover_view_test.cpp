#include "ui/popover/menu_bar_popover_view.h"

#include "tests/support/simulated_services.h"
#include "ui/menus/menu_button.h"
#include "ui/popover/readout_line.h"
#include "ui/theme/kestro_fonts.h"
#include "ui/theme/motion.h"
#include "ui/widgets/load_bar.h"

#include <QApplication>
#include <QMenu>
#include <QPaintEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace kestro {
namespace {

/// Records the region that the panel repaints.
class RecordingPopover : public MenuBarPopoverView {
public:
    using MenuBarPopoverView::MenuBarPopoverView;
    QRegion painted;

protected:
    void paintEvent(QPaintEvent* event) override {
        painted += event->region();
        MenuBarPopoverView::paintEvent(event);
    }
};

class PopoverTest : public testing::Test {
protected:
    explicit PopoverTest(const std::function<void(SimulatedMac&)>& arrange = [](SimulatedMac&) {})
        : services(arrange) {
        KestroTheme::bind(&services.settings());
        motion::setReduced(true);
        services.mac.freeze();
        services.engine().sampleFull();
        view = std::make_unique<RecordingPopover>(
            services.services(), PopoverActions{[this] { calls.append(QStringLiteral("dashboard")); },
                                                [this] { calls.append(QStringLiteral("settings")); },
                                                [this] { calls.append(QStringLiteral("quit")); }});
    }
    ~PopoverTest() override {
        view.reset();
        KestroTheme::bind(nullptr);
        motion::setReduced(false);
    }

    void show() {
        view->show();
        settle();
        view->painted = {};
    }

    static void settle() {
        QApplication::processEvents();
        QApplication::sendPostedEvents();
    }

    void sample() {
        services.advance(std::chrono::seconds(1));
        services.engine().sampleFull();
        settle();
    }

    /// The accessible names in the order of creation, which is from top to bottom.
    QStringList spoken() const {
        QStringList names;
        for (const View* part : view->findChildren<View*>()) {
            const AccessibleInfo info = part->accessibleInfo();
            if (part->isVisible() && !info.isDecoration) {
                names.append(info.name);
            }
        }
        return names;
    }

    ReadoutLine* line(const QString& beginning) const {
        for (ReadoutLine* candidate : view->findChildren<ReadoutLine*>()) {
            if (candidate->accessibleInfo().name.startsWith(beginning)) {
                return candidate;
            }
        }
        ADD_FAILURE() << "no line " << beginning.toStdString();
        return nullptr;
    }

    Button* button(const QString& name) const {
        for (Button* candidate : view->findChildren<Button*>()) {
            if (candidate->accessibleInfo().name.startsWith(name)) {
                return candidate;
            }
        }
        ADD_FAILURE() << "no button " << name.toStdString();
        return nullptr;
    }

    void setTemperature(double celsius) {
        for (SimulatedSensor& sensor : services.mac.hidEventSystem.sensors) {
            sensor.temperature = celsius;
        }
        sample();
    }

    SimulatedServices services;
    QStringList calls;
    std::unique_ptr<RecordingPopover> view;
};

TEST_F(PopoverTest, HasRoomForTheFocusRingOfEveryButton) {
    show();

    for (const Button* one : view->findChildren<Button*>()) {
        constexpr double ring = FocusRing::ringGap + FocusRing::ringWidth;
        const QRectF ringed = one->focusArea().adjusted(-ring, -ring, ring, ring);
        EXPECT_TRUE(QRectF(view->rect()).contains(ringed.translated(one->pos())))
            << one->accessibleInfo().name.toStdString();
    }
}

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

TEST_F(PopoverTest, EveryControlIsLargeEnoughToHit) {
    show();

    for (const Control* control : view->findChildren<Control*>()) {
        const bool isChip = control->accessibleInfo().name == QStringLiteral("Keep Awake");
        EXPECT_GE(control->height(), isChip ? 20 : 22) << control->accessibleInfo().name.toStdString();
        EXPECT_GE(control->width(), 22);
    }
}

/// Fixture with the widest glyphs and the largest numbers everywhere.
class CrowdedPopoverTest : public PopoverTest {
protected:
    CrowdedPopoverTest()
        : PopoverTest([](SimulatedMac& mac) {
              mac.systemControl.texts["hw.perflevel0.name"] = "MMMMMMMMMMMMMMMMMMMMMMMM";
              mac.systemControl.texts["hw.perflevel1.name"] = "<b>&MMMM</b>";
              mac.fileSystem.root = {1'048'576, 9'000'000'000, 8'900'000'000};
              mac.processInfo.memory = 1ULL << 60;
          }) {}
};

TEST_F(CrowdedPopoverTest, KeepsEveryPartInsideThePanelWithoutOverlaps) {
    services.keepAwake().activate(KeepAwakeDuration::hours4);
    services.settings().fanSpeedUnit.set(FanSpeedUnit::rawRPM);
    services.settings().temperatureUnit.set(TemperatureUnit::fahrenheit);
    services.mac.smc.setFans(std::array{65'000.0F, 65'000.0F, 65'000.0F, 65'000.0F, 65'000.0F, 65'000.0F});
    show();
    sample();

    std::vector<const View*> parts;
    for (const View* part : view->findChildren<View*>(QString(), Qt::FindDirectChildrenOnly)) {
        const bool isBar = part->inherits("kestro::LoadBar");
        if (part->isVisible() && !isBar) {
            parts.push_back(part);
        }
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
        EXPECT_TRUE(view->rect().contains(parts[i]->geometry())) << parts[i]->accessibleInfo().name.toStdString();
        for (std::size_t j = i + 1; j < parts.size(); ++j) {
            EXPECT_FALSE(parts[i]->geometry().intersects(parts[j]->geometry()))
                << parts[i]->accessibleInfo().name.toStdString() << " / "
                << parts[j]->accessibleInfo().name.toStdString();
        }
    }
    EXPECT_TRUE(line(QStringLiteral("<b>&MMMM</b>, ")));
}

/// The pixels that a part paints, in the panel's coordinates.
QRegion inkOf(QWidget& part) {
    QImage image(part.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    part.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    QRegion ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0) {
                ink += QRect(x, y, 1, 1);
            }
        }
    }
    return ink.translated(part.pos());
}

TEST_F(CrowdedPopoverTest, KeepsTheLabelsAndValuesOfTheClustersOffTheirBars) {
    services.mac.machHost.coreLoads.assign(services.mac.machHost.coreLoads.size(), 100);
    show();
    sample();

    const auto bars = view->findChildren<LoadBar*>();
    ASSERT_EQ(bars.size(), 2);
    for (ReadoutLine* const cluster : {line(QStringLiteral("MMMM")), line(QStringLiteral("<b>&MMMM</b>"))}) {
        const QRegion ink = inkOf(*cluster);
        EXPECT_FALSE(ink.isEmpty());
        for (const LoadBar* bar : bars) {
            EXPECT_FALSE(ink.intersects(bar->geometry())) << cluster->label().toStdString();
        }
    }
}

}  // namespace
}  // namespace kestro
