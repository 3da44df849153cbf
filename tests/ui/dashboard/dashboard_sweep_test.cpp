#include "tests/ui/dashboard/dashboard_fixture.h"

namespace kestro {
namespace {

/// A machine to test at every size, from the smallest to the largest.
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

    /// The visible area of a child, without the click areas and bleeds that may overlap.
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

TEST_P(DashboardLayoutSweep, HasNoOverlapsAtAnySizeAndSectionCount) {
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

TEST_P(DashboardLayoutSweep, PaintsInAWindowBelowItsMinimum) {
    makeMachine(GetParam());
    show(1260, 480);
    for (const QSize& size : {QSize(1260, 300), QSize(400, 200), QSize(1260, 96), QSize(40, 40), QSize(1, 1)}) {
        SCOPED_TRACE(testing::Message() << size.width() << "x" << size.height());
        view_->resize(size);
        for (const double load : {12.0, 71.0}) {
            machine_->mac.machHost.coreLoads.assign(static_cast<size_t>(GetParam().cores), load);
            machine_->advance(std::chrono::milliseconds(1100));

            const QImage image = view_->grab().toImage();

            ASSERT_EQ(view_->size(), size);
            EXPECT_EQ(image.deviceIndependentSize().toSize(), size);
            EXPECT_GT(qAlpha(image.pixel(image.width() / 2, image.height() / 2)), 0);
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
