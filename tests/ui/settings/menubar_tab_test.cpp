#include "core/model/menubar_modules.h"
#include "tests/ui/settings/settings_view_test.h"
#include "ui/settings/menubar_preview.h"
#include "ui/settings/module_row.h"

#include <QAccessible>

#include <algorithm>
#include <iterator>

namespace kestro {
namespace {

class MenubarTabTest : public SettingsViewFixture {
protected:
    MenubarTabTest() { open(SettingsTab::menubar); }

    ModuleRow& module(MenubarModuleType type) {
        return find<ModuleRow>([type](const ModuleRow& option) { return option.module() == type; },
                               QStringLiteral("module"));
    }

    MenubarPreview& preview() { return *view_->findChild<MenubarPreview*>(); }
    MenubarModules modules() { return settings().activeMenubarModules.get(); }
    void setModules(MenubarModules list) { settings().activeMenubarModules.set(std::move(list)); }
};

TEST_F(MenubarTabTest, HasItsGroupsInOrder) {
    const std::vector<QString> wanted{QStringLiteral("LIVE MENU BAR PREVIEW"),
                                      QStringLiteral("DEDICATED MENU BAR EXTRAS"),
                                      QStringLiteral("ACTIVE TELEMETRY MODULES"),
                                      QStringLiteral("SEPARATOR DELIMITER"),
                                      QStringLiteral("MODULE LABELS"),
                                      QStringLiteral("REFRESH & ENERGY PROFILE")};
    const auto place = [this](const TextLabel* label) {
        const QPoint at = label->mapTo(view_.get(), QPoint());
        return std::pair(at.y(), at.x());
    };

    std::vector<const TextLabel*> headings;
    for (const TextLabel* label : view_->content(SettingsTab::menubar)->findChildren<TextLabel*>()) {
        if (label->isVisible() && std::ranges::find(wanted, label->text()) != wanted.end()) {
            headings.push_back(label);
        }
    }
    std::ranges::sort(headings, {}, place);

    std::vector<QString> shown;
    std::ranges::transform(headings, std::back_inserter(shown), &TextLabel::text);
    EXPECT_EQ(shown, wanted);
}

TEST_F(MenubarTabTest, PreviewsWhatTheStatusItemComposes) {
    const auto expected = [this] {
        return composeReadout(ReadoutLayout::of(settings()),
                              readoutInputs(machine_->engine(), settings(), fans(), machine_->keepAwake(),
                                            machine_->powerManager()));
    };
    setModules({MenubarModuleType::memory, MenubarModuleType::cpuUsage});
    EXPECT_EQ(preview().readout(), expected());
    const Readout before = preview().readout();

    settings().menubarDelimiter.set(MenubarDelimiter::slash);
    settings().showMenubarLabels.set(false);

    EXPECT_EQ(preview().readout(), expected());
    EXPECT_NE(preview().readout(), before);
}

TEST_F(MenubarTabTest, RepaintsThePreviewOnlyWhenItChanges) {
    PaintCounter paints(preview());

    settings().menubarDelimiter.set(settings().menubarDelimiter.get());
    QApplication::processEvents();
    EXPECT_EQ(paints.count, 0);

    settings().menubarDelimiter.set(MenubarDelimiter::slash);
    QApplication::processEvents();
    EXPECT_EQ(paints.count, 1);
}

TEST(PreviewItemsTest, AlignToTheRightEndOfTheBar) {
    const QRectF bar(12, 11, 796, 26);

    const auto areas = previewItems(bar, {40, 90, 200});

    ASSERT_EQ(areas.size(), 3U);
    EXPECT_EQ(areas[2], QRectF(598, 11, 200, 26));
    EXPECT_EQ(areas[1], QRectF(492, 11, 90, 26));
    EXPECT_EQ(areas[0], QRectF(436, 11, 40, 26));
}

TEST(PreviewItemsTest, CutTheReadoutToTheRemainingWidth) {
    const QRectF bar(12, 11, 796, 26);

    const auto areas = previewItems(bar, {40, 90, 2000});

    EXPECT_EQ(areas[0].left(), 22);
    EXPECT_EQ(areas[0].width(), 40);
    EXPECT_EQ(areas[2].right(), 798);
    EXPECT_EQ(areas[2].left(), areas[1].right() + 16);
}

TEST_F(MenubarTabTest, BindsTheExtrasBothWays) {
    SettingRow& keepAwake = row("Dedicated Keep-Awake Status Bar Extra");
    SettingRow& cooling = row("Dedicated Cooling & Power Status Bar Extra");
    const bool before = settings().showDedicatedKeepAwakeItem.get();

    click(keepAwake);
    press(cooling, Qt::Key_Space);

    EXPECT_EQ(settings().showDedicatedKeepAwakeItem.get(), !before);
    EXPECT_EQ(std::get<bool>(stored().values.at("kestro.showDedicatedKeepAwakeItem")), !before);
    EXPECT_EQ(settings().showDedicatedFanItem.get(), cooling.isOn());
    settings().showDedicatedKeepAwakeItem.set(before);
    EXPECT_EQ(keepAwake.isOn(), before);
}

TEST_F(MenubarTabTest, ShowsAndHidesAModule) {
    setModules({MenubarModuleType::memory});

    click(module(MenubarModuleType::battery));
    EXPECT_EQ(modules(), (MenubarModules{MenubarModuleType::memory, MenubarModuleType::battery}));
    EXPECT_TRUE(module(MenubarModuleType::battery).isOn());

    click(module(MenubarModuleType::memory));
    EXPECT_EQ(modules(), (MenubarModules{MenubarModuleType::battery}));
    EXPECT_FALSE(module(MenubarModuleType::memory).isOn());
}

TEST_F(MenubarTabTest, KeepsTheLastModule) {
    setModules({MenubarModuleType::memory});

    click(module(MenubarModuleType::memory));

    EXPECT_EQ(modules(), (MenubarModules{MenubarModuleType::memory}));
    EXPECT_TRUE(module(MenubarModuleType::memory).isOn());
}

TEST_F(MenubarTabTest, MovesAModuleByItsChipsAndByKeys) {
    setModules({MenubarModuleType::memory, MenubarModuleType::cpuUsage, MenubarModuleType::battery});

    click(module(MenubarModuleType::cpuUsage).upButton());
    EXPECT_EQ(modules().front(), MenubarModuleType::cpuUsage);
    click(module(MenubarModuleType::cpuUsage).downButton());
    EXPECT_EQ(modules().front(), MenubarModuleType::memory);
    press(module(MenubarModuleType::battery), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(modules()[1], MenubarModuleType::battery);
    press(module(MenubarModuleType::memory), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(modules()[1], MenubarModuleType::memory);
}

TEST_F(MenubarTabTest, DoesNotMoveModulesBeyondTheEnds) {
    const MenubarModules list{MenubarModuleType::memory, MenubarModuleType::cpuUsage};
    setModules(list);

    click(module(MenubarModuleType::memory).upButton());
    press(module(MenubarModuleType::memory), Qt::Key_Up, Qt::AltModifier);
    click(module(MenubarModuleType::cpuUsage).downButton());
    click(module(MenubarModuleType::diskSpace).upButton());

    EXPECT_EQ(modules(), list);
    EXPECT_FALSE(module(MenubarModuleType::memory).upButton().isEnabled());
    EXPECT_TRUE(module(MenubarModuleType::memory).downButton().isEnabled());
    EXPECT_FALSE(module(MenubarModuleType::diskSpace).downButton().isEnabled());
}

TEST_F(MenubarTabTest, KeepsTheFocusOnAChipThatReachesTheEnd) {
    setModules({MenubarModuleType::memory, MenubarModuleType::cpuUsage, MenubarModuleType::battery});
    view_->activateWindow();
    QApplication::processEvents();
    Button& up = module(MenubarModuleType::cpuUsage).upButton();
    up.setFocus(Qt::TabFocusReason);

    press(up, Qt::Key_Space);
    press(up, Qt::Key_Space);

    const MenubarModules moved{MenubarModuleType::cpuUsage, MenubarModuleType::memory, MenubarModuleType::battery};
    EXPECT_EQ(modules(), moved);
    EXPECT_EQ(QApplication::focusWidget(), &up);
    EXPECT_FALSE(up.isAvailable());
    EXPECT_TRUE(QAccessible::queryAccessibleInterface(&up)->state().disabled);
    module(MenubarModuleType::cpuUsage).setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(up.isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), &module(MenubarModuleType::cpuUsage));
}

TEST_F(MenubarTabTest, ExposesAModulesPlace) {
    setModules({MenubarModuleType::cpuUsage, MenubarModuleType::memory});

    EXPECT_EQ(module(MenubarModuleType::memory).accessibleInfo().name,
              QStringLiteral("Unified Memory, shown, position 2"));
    EXPECT_EQ(module(MenubarModuleType::network).accessibleInfo().name,
              QStringLiteral("Network Throughput, hidden"));
}

/// Counts its announcements.
class AnnouncedRow : public ModuleRow {
public:
    using ModuleRow::ModuleRow;
    int announced = 0;

protected:
    void announceName() override { ++announced; }
};

using ModuleRowTest = ViewTest;

TEST_F(ModuleRowTest, AnnouncesItsNewPlaceOnlyWhenFocused) {
    QWidget window;
    AnnouncedRow option(MenubarModuleType::memory, &window);
    option.setPlace(1, 4);
    window.show();
    window.activateWindow();
    QApplication::processEvents();
    option.clearFocus();
    option.upButton().clearFocus();
    option.setPlace(2, 4);
    EXPECT_EQ(option.announced, 0);

    option.setFocus(Qt::TabFocusReason);
    option.setPlace(1, 4);
    option.setPlace(1, 4);
    EXPECT_EQ(option.announced, 1);
    option.downButton().setFocus(Qt::TabFocusReason);
    option.setPlace(2, 4);
    EXPECT_EQ(option.announced, 2);
    option.upButton().setFocus(Qt::TabFocusReason);
    option.setPlace(0, 4);  // disables the focused chip
    EXPECT_EQ(option.announced, 3);
}

TEST_F(MenubarTabTest, MovesAModuleThatIsListedTwice) {
    setModules({MenubarModuleType::memory, MenubarModuleType::memory, MenubarModuleType::cpuUsage});

    click(module(MenubarModuleType::memory).downButton());

    EXPECT_EQ(modules(), (MenubarModules{MenubarModuleType::cpuUsage, MenubarModuleType::memory}));
}

TEST_F(MenubarTabTest, BindsDelimiterAndLabelsBothWays) {
    SegmentedChoice& delimiter = segments("Separator Delimiter");

    clickSegment(delimiter, 1, 4);
    click(row("Show Metric Prefixes (e.g. RAM, CPU)"));

    EXPECT_EQ(settings().menubarDelimiter.get(), MenubarDelimiter::pipe);
    EXPECT_EQ(settings().showMenubarLabels.get(), row("Show Metric Prefixes (e.g. RAM, CPU)").isOn());
    settings().menubarDelimiter.set(MenubarDelimiter::space);
    EXPECT_EQ(delimiter.chosen(), 3);
    settings().showMenubarLabels.set(true);
    EXPECT_TRUE(row("Show Metric Prefixes (e.g. RAM, CPU)").isOn());
}

TEST_F(MenubarTabTest, RestartsTheTimerWhenTheProfileChanges) {
    SegmentedChoice& profile = segments("Refresh & Energy Profile");
    int samples = 0;
    const auto subscription = machine_->engine().cpu.subscribe([&samples](const CPUTelemetry&) { ++samples; });

    clickSegment(profile, 2, 3);
    machine_->advance(std::chrono::milliseconds(1100));

    EXPECT_EQ(settings().pollingProfile.get(), PollingProfile::highPrecision);
    EXPECT_EQ(samples, 2);
    settings().pollingProfile.set(PollingProfile::eco);
    EXPECT_EQ(profile.chosen(), 0);
}

}  // namespace
}  // namespace kestro
