#include "ui/dashboard/dashboard_view.h"

#include "tests/support/simulated_services.h"
#include "tests/ui/controls/view_test.h"
#include "ui/controls/button.h"
#include "ui/dashboard/activity_section.h"
#include "ui/dashboard/compute_section.h"
#include "ui/dashboard/cooling_section.h"
#include "ui/dashboard/io_section.h"
#include "ui/dashboard/memory_section.h"
#include "ui/dashboard/process_row.h"

#include <QPaintEvent>

namespace kestro {
namespace {

class DashboardViewTest : public testing::Test {
protected:
    DashboardViewTest() { motion::setReduced(true); }

    ~DashboardViewTest() override {
        view_.reset();
        KestroTheme::bind(nullptr);
        motion::setReduced(false);
    }

    template <typename Arrange>
    void make(Arrange arrange) {
        view_.reset();
        machine_ = std::make_unique<SimulatedServices>(arrange);
        KestroTheme::bind(&machine_->settings());
        machine_->settle();
        DashboardActions actions;
        actions.onOpenSettings = [this] { asked_ += 's'; };
        actions.onToggleFullScreen = [this] { asked_ += 'f'; };
        actions.onClose = [this] { asked_ += 'c'; };
        view_ = std::make_unique<DashboardView>(machine_->services(), actions);
    }

    void make() {
        make([](SimulatedMac&) {});
    }

    void show(int width, int height) {
        view_->resize(width, height);
        view_->show();
        QApplication::processEvents();
    }

    template <typename Section>
    Section& section() {
        return *view_->findChild<Section*>();
    }

    Button& headerButton(const QString& help) {
        for (Button* button : view_->findChildren<Button*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (button->help() == help) {
                return *button;
            }
        }
        throw std::runtime_error("no such button: " + help.toStdString());
    }

    QString rowValue(const QString& label) {
        for (const RuledIndexRow* row : view_->findChildren<RuledIndexRow*>()) {
            if (row->content().label == label) {
                return row->content().value;
            }
        }
        return {};
    }

    std::unique_ptr<SimulatedServices> machine_;
    std::unique_ptr<DashboardView> view_;
    std::string asked_;
};

TEST_F(DashboardViewTest, HasTheIdealSizeOfItsSections) {
    make();
    EXPECT_EQ(view_->sizeHint(), QSize(1260, 480));
    EXPECT_EQ(view_->minimumSizeHint(), QSize(720, 420));

    machine_->settings().showNetwork.set(false);
    machine_->settings().showTopProcesses.set(false);
    machine_->settings().showMemory.set(false);

    EXPECT_EQ(view_->sizeHint(), QSize(788, 480));
}

TEST_F(DashboardViewTest, AsksTheApplicationThroughItsButtons) {
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

TEST_F(DashboardViewTest, ShowsAnEmptyRowWithoutSections) {
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
}

TEST_F(DashboardViewTest, ShowsTheValuesOfTheMachine) {
    make();
    show(1260, 480);

    EXPECT_EQ(rowValue(QStringLiteral("Local IP")), QStringLiteral("192.168.1.24"));
    EXPECT_EQ(rowValue(QStringLiteral("Battery")), QStringLiteral("87%"));
    EXPECT_EQ(rowValue(QStringLiteral("Swap")), QStringLiteral("0.6 of 2.0 GB"));
    EXPECT_EQ(rowValue(QStringLiteral("Power Mode")), QStringLiteral("AUTO"));
}

TEST_F(DashboardViewTest, ShowsTemperaturesInCelsiusWhateverTheUnit) {
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

TEST_F(DashboardViewTest, RepaintsOnlyTheValueThatChanged) {
    make([](SimulatedMac& mac) { mac.freeze(); });
    show(1260, 480);
    class Region : public QObject {
    public:
        QRegion painted;
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Paint) {
                painted += static_cast<QPaintEvent*>(event)->region();
            }
            return false;
        }
    } region;
    view_->installEventFilter(&region);

    machine_->advance(std::chrono::milliseconds(1100));
    QApplication::processEvents();
    EXPECT_TRUE(region.painted.isEmpty()) << "an unchanged tick paints nothing";
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

    EXPECT_EQ(machine_->mac.commandRunner.calls().size(), listings + 1) << "already sorted so";
}

TEST_F(DashboardViewTest, SwitchesTheMetricWithTheOneHeadOfATightList) {
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

TEST_F(DashboardViewTest, ShowsAsManyProcessesAsAskedFor) {
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

TEST_F(DashboardViewTest, SurvivesAnyStoredProcessCount) {
    for (const std::int64_t count : {std::int64_t{-5}, std::int64_t{0}, std::int64_t{1'000'000'000'000}}) {
        make();
        machine_->settings().processCountLimit.set(count);
        show(740, 420);
    }

    SUCCEED();
}

TEST_F(DashboardViewTest, SpeaksItsValues) {
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
}

/// Every size, with machines from the smallest to the largest.
struct Machine {
    const char* name;
    int cores;
    int fans;
    bool hasBattery;
    int processes;
    bool hasLongNames;
};

class DashboardLayoutSweep : public DashboardViewTest, public testing::WithParamInterface<Machine> {
protected:
    void makeMachine(const Machine& machine) {
        make([&](SimulatedMac& mac) {
            mac.machHost.cores.resize(static_cast<size_t>(machine.cores));
            mac.machHost.coreLoads.assign(static_cast<size_t>(machine.cores), 100);
            mac.systemControl.integers["hw.perflevel0.physicalcpu"] = machine.cores;
            mac.systemControl.integers["hw.perflevel1.physicalcpu"] = machine.cores > 1 ? machine.cores / 2 : 0;
            mac.smc.setFans(std::vector<float>(static_cast<size_t>(machine.fans), 12000));
            if (!machine.hasBattery) {
                mac.powerSources.removeBattery();
            }
            mac.commandRunner.processes.clear();
            for (int i = 0; i < machine.processes; ++i) {
                const std::string name = machine.hasLongNames ? std::string(300, 'W') : "sh";
                mac.commandRunner.processes.push_back({i + 1, 100.0 * 64, 999 * 1024 * 1024, "/usr/bin/" + name});
            }
            if (machine.hasLongNames) {
                mac.systemControl.texts["machdep.cpu.brand_string"] = std::string(200, 'M');
                mac.systemControl.texts["hw.perflevel0.name"] = std::string(200, 'P');
            }
        });
        machine_->settings().processCountLimit.set(10);
        machine_->settle();
    }

    /// What of a child is visibly its own: without the hit areas and bleeds that may overlap.
    static QRect ownArea(const QWidget& child) {
        const QRect area = child.geometry();
        return qobject_cast<const SparklineView*>(&child) ? area.adjusted(1, 1, -1, -1) : area;
    }

    static std::string describe(QWidget& child) {
        const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&child);
        return child.metaObject()->className() + (" \"" + spoken->text(QAccessible::Name).toStdString() + "\"");
    }

    static void expectDisjointChildren(const QWidget& parent) {
        std::vector<QWidget*> children;
        for (QWidget* child : parent.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
            const bool isHead =
                qobject_cast<const Button*>(child) && qobject_cast<const ActivitySection*>(&parent);
            if (child->isVisible() && !isHead) {
                children.push_back(child);
            }
        }
        for (size_t i = 0; i < children.size(); ++i) {
            ASSERT_TRUE(parent.rect().adjusted(-1, -1, 1, 1).contains(children[i]->geometry()))
                << children[i]->metaObject()->className();
            for (size_t k = i + 1; k < children.size(); ++k) {
                ASSERT_FALSE(ownArea(*children[i]).intersects(ownArea(*children[k])))
                    << describe(*children[i]) << " and " << describe(*children[k]);
            }
        }
    }
};

TEST_P(DashboardLayoutSweep, OverlapsNothingAtAnySizeAndSectionCount) {
    makeMachine(GetParam());
    show(1260, 480);
    const QSize sizes[] = {{740, 420},  {788, 480},  {800, 460},   {1000, 480},  {1075, 430}, {1260, 420},
                           {1260, 480}, {1500, 750}, {1920, 1080}, {3840, 2160}, {740, 2160}, {3840, 420}};
    UserSettings& settings = machine_->settings();
    Setting<bool>* const switches[] = {&settings.showTopProcesses, &settings.showNetwork, &settings.showMemory,
                                       &settings.showCooling};
    for (int hidden = 0; hidden <= 4; ++hidden) {
        if (hidden > 0) {
            switches[hidden - 1]->set(false);
        }
        for (const QSize& size : sizes) {
            SCOPED_TRACE(testing::Message() << size.width() << "x" << size.height() << " without " << hidden);
            view_->resize(size);
            expectDisjointChildren(*view_);
            for (const DashboardSection* one : view_->findChildren<DashboardSection*>()) {
                if (one->isVisible()) {
                    expectDisjointChildren(*one);
                }
            }
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Machines, DashboardLayoutSweep,
                         testing::Values(Machine{"laptop", 12, 2, true, 6, false},
                                         Machine{"smallest", 1, 0, false, 0, false},
                                         Machine{"oneFan", 8, 1, true, 5, false},
                                         Machine{"largest", 256, 6, true, 10, true}),
                         [](const auto& machine) { return std::string(machine.param.name); });

}  // namespace
}  // namespace kestro
