#include "ui/dashboard/dashboard_view.h"

#include "tests/ui/controls/view_test.h"
#include "tests/ui/dashboard/dashboard_fixture.h"
#include "ui/controls/text_label.h"
#include "ui/dashboard/process_row.h"
#include "ui/widgets/core_matrix_view.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace kestro {
namespace {

TEST_F(DashboardViewTest, HasTheIdealSizeForItsSections) {
    make();
    EXPECT_EQ(view_->sizeHint(), QSize(1260, 480));
    EXPECT_EQ(view_->minimumSizeHint(), QSize(720, 420));

    machine_->settings().showNetwork.set(false);
    machine_->settings().showTopProcesses.set(false);
    machine_->settings().showMemory.set(false);

    EXPECT_EQ(view_->sizeHint(), QSize(788, 480));
}

TEST_F(DashboardViewTest, CallsItsActionsFromTheHeaderButtons) {
    make();
    show(1260, 480);

    headerButton(QStringLiteral("Settings")).click();
    headerButton(QStringLiteral("Toggle Windowed Full Screen")).click();
    headerButton(QStringLiteral("Close Dashboard")).click();

    EXPECT_EQ(asked_, "sfc");
}

TEST_F(DashboardViewTest, ShowsAndTogglesThePin) {
    make();
    show(1260, 480);
    Button& pin = headerButton(QStringLiteral("Pin Window on Top"));

    pin.click();
    EXPECT_TRUE(machine_->settings().isPinned.get());
    EXPECT_TRUE(pin.isOn());
    EXPECT_EQ(pin.help(), QStringLiteral("Unpin Window"));
    machine_->settings().isPinned.set(false);

    EXPECT_FALSE(pin.isOn());
    EXPECT_EQ(pin.help(), QStringLiteral("Pin Window on Top"));
}

TEST_F(DashboardViewTest, FollowsTheSectionSwitchesAtOnce) {
    make();
    show(1260, 480);
    EXPECT_EQ(section<ComputeSection>().geometry(), QRect(20, 58, 230, 382));

    machine_->settings().showCooling.set(false);
    machine_->settings().showNetwork.set(false);

    EXPECT_FALSE(section<CoolingSection>().isVisible());
    EXPECT_TRUE(section<MemorySection>().isVisible());
    EXPECT_GT(section<ComputeSection>().width(), 380);
    EXPECT_LT(section<ComputeSection>().geometry().right(), section<MemorySection>().x());
}

TEST_F(DashboardViewTest, SaysWhichFileSystemTheStorageIs) {
    make([](SimulatedMac& mac) { mac.fileSystem.mount = FileSystemMount{"/var", "/dev/nvme0n1p3", "btrfs"}; });
    show(1260, 480);

    const auto rows = section<MemorySection>().findChildren<RuledIndexRow*>();
    const auto gauges = section<MemorySection>().findChildren<MetricGauge*>();

    EXPECT_EQ(rows.back()->help(), QStringLiteral("/var on /dev/nvme0n1p3 (btrfs)"));
    EXPECT_EQ(gauges.back()->help(), QStringLiteral("/var on /dev/nvme0n1p3 (btrfs)"));
    EXPECT_EQ(rows.front()->help(), QString());
}

TEST_F(DashboardViewTest, HasSquareCornersInFullScreen) {
    make();
    show(1260, 480);
    const auto corner = [this] { return qAlpha(view_->grab().toImage().pixel(1, 1)); };
    const int rounded = corner();

    view_->setWindowState(Qt::WindowFullScreen);
    QApplication::processEvents();
    const int square = corner();
    view_->setWindowState(Qt::WindowNoState);
    QApplication::processEvents();

    EXPECT_EQ(rounded, 0);
    EXPECT_GT(square, 0);
    EXPECT_EQ(corner(), 0);
}

TEST_F(DashboardViewTest, ShowsASentenceWithoutSections) {
    make();
    UserSettings& settings = machine_->settings();
    for (Setting<bool>* one : {&settings.showCompute, &settings.showCooling, &settings.showMemory,
                               &settings.showNetwork, &settings.showTopProcesses}) {
        one->set(false);
    }
    show(788, 480);

    for (const DashboardSection* one : view_->findChildren<DashboardSection*>()) {
        EXPECT_FALSE(one->isVisible());
    }
    const auto sentence = [this] {
        QString shown;
        for (const TextLabel* one : view_->findChildren<TextLabel*>(QString(), Qt::FindDirectChildrenOnly)) {
            shown += one->isVisible() && one->text().endsWith(QLatin1Char('.')) ? one->text() : QString();
        }
        return shown;
    };
    EXPECT_EQ(sentence(), QStringLiteral("Every section is off. Choose some in Settings, under Dashboard."));
    settings.showCompute.set(true);
    EXPECT_EQ(sentence(), QString());
}

TEST_F(DashboardViewTest, SaysThatNoProcessIsListed) {
    make([](SimulatedMac& mac) { mac.commandRunner.processes.clear(); });
    show(1260, 480);
    const auto isSaid = [this] {
        const auto labels = section<ActivitySection>().findChildren<TextLabel*>();
        return std::ranges::any_of(labels, [](const TextLabel* one) {
            return one->isVisible() && one->text() == QStringLiteral("No processes listed");
        });
    };
    EXPECT_TRUE(isSaid());

    machine_->mac.commandRunner.processes.push_back({1, 12, 1024 * 1024, "/usr/bin/sh"});
    machine_->settle();

    EXPECT_FALSE(isSaid());
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

TEST_F(DashboardViewTest, ListsTheProcessesAgainWhenAColumnHeadIsClicked) {
    make();
    show(1260, 480);
    const auto heads = section<ActivitySection>().findChildren<Button*>();
    ASSERT_EQ(heads.size(), 2);
    const auto listings = machine_->mac.commandRunner.calls().size();

    heads[1]->click();
    machine_->mac.runPending();
    EXPECT_EQ(machine_->settings().processSortMetric.get(), ProcessSortMetric::memory);
    EXPECT_EQ(machine_->mac.commandRunner.calls().size(), listings + 1);
    heads[1]->click();
    machine_->mac.runPending();

    EXPECT_EQ(machine_->mac.commandRunner.calls().size(), listings + 1) << "already sorted by this column";
}

TEST_F(DashboardViewTest, TogglesTheMetricWithTheSingleHeadOfATightList) {
    make();
    show(740, 420);
    const auto heads = section<ActivitySection>().findChildren<Button*>();
    EXPECT_TRUE(heads[0]->isVisible());
    EXPECT_FALSE(heads[1]->isVisible());

    heads[0]->click();
    EXPECT_TRUE(heads[1]->isVisible());
    EXPECT_FALSE(heads[0]->isVisible());
    heads[1]->click();

    EXPECT_EQ(machine_->settings().processSortMetric.get(), ProcessSortMetric::cpu);
}

TEST_F(DashboardViewTest, ShowsTheFullCommandOfAProcessAsPlainText) {
    make([](SimulatedMac& mac) {
        mac.commandRunner.processes = {{7, 99, 1024, "/opt/<b>evil</b> --flag & more"}};
    });
    show(1260, 480);

    const ProcessRow* row = section<ActivitySection>().findChild<ProcessRow*>();

    ASSERT_TRUE(row);
    EXPECT_EQ(row->help(), QStringLiteral("/opt/<b>evil</b> --flag & more"));
}

TEST_F(DashboardViewTest, ShowsNoRowsWithoutProcesses) {
    make([](SimulatedMac& mac) { mac.commandRunner.processes.clear(); });
    show(1260, 480);

    for (const ProcessRow* row : section<ActivitySection>().findChildren<ProcessRow*>()) {
        EXPECT_FALSE(row->isVisible());
    }
}

TEST_F(DashboardViewTest, ShowsTheRequestedNumberOfProcesses) {
    make();
    machine_->settings().processCountLimit.set(10);
    machine_->settle();
    show(1260, 480);

    int visible = 0;
    for (const ProcessRow* row : section<ActivitySection>().findChildren<ProcessRow*>()) {
        visible += row->isVisible();
    }

    EXPECT_EQ(visible, 10);
}

TEST_F(DashboardViewTest, ClampsTheProcessCountInItsRemark) {
    const std::pair<std::int64_t, const char*> cases[] = {
        {-5, "Top 1"}, {0, "Top 1"}, {6, "Top 6"}, {1'000'000'000'000, "Top 64"}};
    for (const auto& [count, meta] : cases) {
        make();
        machine_->settings().processCountLimit.set(count);
        show(1260, 480);

        QStringList texts;
        for (const TextLabel* label : section<ActivitySection>().findChildren<TextLabel*>()) {
            texts.append(label->text());
        }
        EXPECT_EQ(texts.filter(QStringLiteral("Top ")), QStringList{QString::fromUtf8(meta)}) << count;
    }
}

TEST_F(DashboardViewTest, RecoloursOnlyAccentsAndGroundWithThePalette) {
    make([](SimulatedMac& mac) { mac.machHost.coreLoads.assign(mac.machHost.coreLoads.size(), 60); });
    UserSettings& settings = machine_->settings();
    settings.themePalette.set(ThemePalette::cryogenic);
    settings.glassMaterial.set(GlassMaterialStyle::hudContrast);
    settings.halftoneIntensity.set(HalftoneIntensity::off);
    show(1260, 480);
    const QWidget& cores = *section<ComputeSection>().findChild<CoreMatrixView*>();
    const QPoint bar = cores.mapTo(view_.get(), QPoint(2, 0));
    // Counts the pixels of an area that nearly match a colour.
    const auto count = [](const QImage& image, const QRect& area, const QColor& color) {
        int found = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                found += std::abs(pixel.red() - color.red()) + std::abs(pixel.green() - color.green()) +
                             std::abs(pixel.blue() - color.blue()) <
                         12;
            }
        }
        return found;
    };
    const auto shot = [this] {
        QApplication::processEvents();
        return view_->grab().toImage().convertToFormat(QImage::Format_ARGB32);
    };
    const QRect matrix(bar, QSize(cores.width() - 2, cores.height()));
    const QRect wordmark(40, 8, 120, 28);
    const QRect dot(20, view_->height() - 28, 8, 28);
    const QPoint empty(view_->width() / 2, 20);

    const QImage before = shot();
    settings.themePalette.set(ThemePalette::lilac);
    const QImage after = shot();

    const QColor cool = primaryColor(ThemePalette::cryogenic);
    const QColor lilac = primaryColor(ThemePalette::lilac);
    EXPECT_GT(count(before, matrix, cool), 20);
    EXPECT_EQ(count(before, matrix, lilac), 0);
    EXPECT_EQ(count(after, matrix, cool), 0);
    EXPECT_GT(count(after, matrix, lilac), 20);
    EXPECT_NE(before.pixelColor(empty), after.pixelColor(empty));
    for (const QImage& image : {before, after}) {
        EXPECT_GT(count(image, wordmark, KestroTheme::textPrimary()), 20) << "text";
        EXPECT_GT(count(image, dot, KestroTheme::accentNominal()), 4) << "dot of the running engine";
    }
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

TEST_F(DashboardViewTest, DrawsTheRingOfAColumnHeadAboveTheFirstProcess) {
    make();
    show(1260, 480);
    ActivitySection& activity = section<ActivitySection>();
    int firstProcess = activity.height();
    for (const ProcessRow* row : activity.findChildren<ProcessRow*>()) {
        firstProcess = std::min(firstProcess, row->y());
    }
    const double titleRule = 12 + SectionGrid::titleRule;

    for (const Button* head : activity.findChildren<Button*>()) {
        constexpr double ring = FocusRing::ringGap + FocusRing::ringWidth;
        const QRectF area = head->focusArea().translated(head->pos());
        EXPECT_GT(area.top() - ring, titleRule) << head->text().toStdString();
        EXPECT_LE(area.bottom() + ring, firstProcess) << head->text().toStdString();
    }
}

TEST_F(DashboardViewTest, ExposesTheSortColumn) {
    make();
    show(1260, 480);
    const auto sorting = [this] {
        QStringList found;
        for (Button* head : section<ActivitySection>().findChildren<Button*>()) {
            const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(head);
            if (spoken->text(QAccessible::Description) == QStringLiteral("The list is sorted by this")) {
                found.append(head->text());
            }
        }
        return found;
    };

    EXPECT_EQ(sorting(), QStringList{QStringLiteral("CPU")});
    machine_->settings().processSortMetric.set(ProcessSortMetric::memory);
    EXPECT_EQ(sorting(), QStringList{QStringLiteral("Memory")});
}

}  // namespace
}  // namespace kestro
