#include "core/model/menubar_modules.h"
#include "tests/ui/settings/settings_view_test.h"
#include "ui/settings/module_row.h"

#include <algorithm>

namespace kestro {
namespace {

constexpr auto icon = MenubarModuleType::appIcon;
constexpr auto memory = MenubarModuleType::memory;
constexpr auto fanSpeed = MenubarModuleType::fanSpeed;
constexpr auto battery = MenubarModuleType::battery;
constexpr auto network = MenubarModuleType::network;

/// Fixture that drags modules over the list, whose rows always keep the same order.
class ModuleDragTest : public SettingsViewFixture {
protected:
    ModuleDragTest() {
        open(SettingsTab::menubar);
        modules().set({icon, memory, fanSpeed, battery});
    }

    Setting<MenubarModules>& modules() { return settings().activeMenubarModules; }

    ModuleRow& module(MenubarModuleType type) {
        return find<ModuleRow>([type](const ModuleRow& option) { return option.module() == type; },
                               QStringLiteral("module"));
    }

    static QPointF grip(const QWidget& row) { return {60, row.height() / 2.0}; }

    void lift(ModuleRow& from, ModuleRow& to) {
        send(from, QEvent::MouseButtonPress, grip(from), Qt::LeftButton);
        send(from, QEvent::MouseMove, from.mapFromGlobal(to.mapToGlobal(grip(to))), Qt::LeftButton);
    }

    void drop(ModuleRow& from, ModuleRow& to) {
        send(from, QEvent::MouseButtonRelease, from.mapFromGlobal(to.mapToGlobal(grip(to))), Qt::NoButton);
    }

    void drag(MenubarModuleType from, MenubarModuleType to) {
        lift(module(from), module(to));
        drop(module(from), module(to));
    }

    /// Sends an event of another button while the left one is held.
    static void sendButton(QWidget& row, QEvent::Type type, Qt::MouseButton button) {
        const auto held =
            type == QEvent::MouseButtonPress ? Qt::LeftButton | button : Qt::MouseButtons(Qt::LeftButton);
        QMouseEvent event(type, grip(row), row.mapToGlobal(grip(row)), button, held, Qt::NoModifier);
        QApplication::sendEvent(&row, &event);
    }

    std::vector<MenubarModuleType> marked() {
        std::vector<MenubarModuleType> found;
        for (const ModuleRow* option : view_->findChildren<ModuleRow*>()) {
            if (option->isDropTarget()) {
                found.push_back(option->module());
            }
        }
        return found;
    }
};

TEST_F(ModuleDragTest, MovesAModuleToWhereItIsDropped) {
    drag(icon, fanSpeed);
    EXPECT_EQ(restarted().activeMenubarModules.get(), (MenubarModules{memory, fanSpeed, icon, battery}));

    drag(battery, memory);
    EXPECT_EQ(restarted().activeMenubarModules.get(), (MenubarModules{battery, memory, fanSpeed, icon}));
}

TEST_F(ModuleDragTest, ShowsAHiddenModuleWhereItIsDropped) {
    drag(network, memory);

    EXPECT_EQ(modules().get(), (MenubarModules{icon, network, memory, fanSpeed, battery}));
    EXPECT_TRUE(module(network).isOn());
}

TEST_F(ModuleDragTest, IgnoresDropsElsewhere) {
    const MenubarModules before = modules().get();

    drag(memory, network);
    lift(module(memory), module(fanSpeed));
    drag(memory, memory);
    send(module(memory), QEvent::MouseButtonPress, {60, 10}, Qt::LeftButton);
    send(module(memory), QEvent::MouseMove, {-900, -900}, Qt::LeftButton);
    send(module(memory), QEvent::MouseButtonRelease, {-900, -900}, Qt::NoButton);

    EXPECT_EQ(modules().get(), before);
    EXPECT_TRUE(module(memory).isOn());
}

TEST_F(ModuleDragTest, MarksTheDropTarget) {
    lift(module(icon), module(fanSpeed));
    EXPECT_EQ(marked(), (std::vector{fanSpeed}));

    lift(module(icon), module(network));
    EXPECT_TRUE(marked().empty());

    lift(module(icon), module(battery));
    drop(module(icon), module(battery));
    EXPECT_TRUE(marked().empty());
}

TEST_F(ModuleDragTest, ShowsAPictureOfTheRowOnlyWhileItIsDragged) {
    const auto children = [this] {
        return std::ranges::count_if(view_->findChildren<QWidget*>(), &QWidget::isVisible);
    };
    const auto before = children();

    lift(module(icon), module(fanSpeed));
    EXPECT_EQ(children(), before + 1);

    drop(module(icon), module(fanSpeed));
    EXPECT_EQ(children(), before);
}

TEST_F(ModuleDragTest, IsCancelledByEscape) {
    const MenubarModules before = modules().get();

    lift(module(icon), module(fanSpeed));
    press(module(icon), Qt::Key_Escape);
    drop(module(icon), module(fanSpeed));

    EXPECT_EQ(modules().get(), before);
    EXPECT_TRUE(marked().empty());
}

TEST_F(ModuleDragTest, IsCancelledByTheRightButton) {
    const MenubarModules before = modules().get();

    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        lift(module(icon), module(fanSpeed));
        sendButton(module(icon), type, Qt::RightButton);
        EXPECT_TRUE(marked().empty());
        drop(module(icon), module(fanSpeed));
    }

    EXPECT_EQ(modules().get(), before);
    EXPECT_TRUE(module(icon).isOn());
}

TEST_F(ModuleDragTest, ContinuesWhileOtherButtonsArePressed) {
    lift(module(icon), module(fanSpeed));
    sendButton(module(icon), QEvent::MouseButtonPress, Qt::MiddleButton);
    sendButton(module(icon), QEvent::MouseButtonRelease, Qt::MiddleButton);
    EXPECT_EQ(marked(), (std::vector{fanSpeed}));

    drop(module(icon), module(fanSpeed));

    EXPECT_EQ(modules().get(), (MenubarModules{memory, fanSpeed, icon, battery}));
}

TEST_F(ModuleDragTest, IsCancelledWhenTheTabChanges) {
    const MenubarModules before = modules().get();
    ModuleRow& dragged = module(icon);
    ModuleRow& target = module(fanSpeed);

    lift(dragged, target);
    settings().selectedSettingsTab.set(SettingsTab::sensors);
    drop(dragged, target);

    EXPECT_EQ(modules().get(), before);
}

TEST_F(ModuleDragTest, TogglesARowThatIsPressedAndBarelyMoved) {
    ModuleRow& option = module(battery);

    send(option, QEvent::MouseButtonPress, {60, 10}, Qt::LeftButton);
    send(option, QEvent::MouseMove, {62, 11}, Qt::LeftButton);
    send(option, QEvent::MouseButtonRelease, {62, 11}, Qt::NoButton);

    EXPECT_EQ(modules().get(), (MenubarModules{icon, memory, fanSpeed}));
}

}  // namespace
}  // namespace kestro
