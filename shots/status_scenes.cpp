#include "app/menus/main_menu.h"
#include "app/status_items/fan_control_status_item.h"
#include "app/status_items/keep_awake_status_item.h"
#include "app/status_items/main_status_content.h"
#include "shell/linux/notifier/glance_icon.h"
#include "shell/linux/status_menu_popup.h"
#include "shell/linux/strip/strip_status_bar.h"
#include "shell/linux/strip/strip_window.h"
#include "shots/scene.h"
#include "shots/sheet.h"

#include <QApplication>
#include <QMenu>

#include <array>
#include <chrono>

namespace kestro::shots {

namespace {

/// Commands that do nothing.
class NoCommands final : public MenuCommands {
public:
    void togglePopover() override {}
    void toggleDashboard() override {}
    void toggleFullScreenAction() override {}
    void showSettings() override {}
    void togglePin() override {}
    void quit() override {}
};

/// The icons for hosts without text, on a panel in that scheme.
class TrayPanel : public QWidget {
public:
    explicit TrayPanel(PanelScheme scheme) : scheme_(scheme) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), scheme_ == PanelScheme::dark ? QColor(12, 13, 15) : QColor(233, 234, 238));
        constexpr std::array<StatusGlance, 4> glances{
            {{42, 18}, {100, 7}, {std::nullopt, std::nullopt}, {64, std::nullopt}}};
        double left = 10;
        for (const StatusGlance& glance : glances) {
            for (const int points : {22, 44}) {
                QImage icon = glanceIcon(glance, qRound(points * devicePixelRatioF()), scheme_);
                icon.setDevicePixelRatio(devicePixelRatioF());
                painter.drawImage(QPointF(left, (height() - points) / 2.0), icon);
                left += points + 14;
            }
        }
    }

private:
    PanelScheme scheme_;
};

StripWindow* stripWindow() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* const strip = dynamic_cast<StripWindow*>(window)) {
            return strip;
        }
    }
    return nullptr;
}

/// The strip with all three items in their current state.
QWidget* strip(SimulatedServices& services) {
    const Platform platform = services.mac.platform();
    StripStatusBar bar;
    const auto main = bar.createItem(QStringLiteral("kestro-main"), {});
    MainStatusContent content(services.services());
    content.update();
    main->setContent(content.content());
    const KeepAwakeStatusItem awake(platform, bar, services.settings(), services.keepAwake(),
                                    services.services().powerStatus);
    const FanControlStatusItem cooling(platform, bar, services.settings(), services.objects->readers.smc,
                                       services.fanManager(), services.powerManager());
    QCoreApplication::processEvents();
    return new PictureOf(*stripWindow());
}

QWidget* contextMenu(bool isSubmenuOpen) {
    NoCommands commands;
    SimulatedServices services;
    services.keepAwake().activate(KeepAwakeDuration::minutes15);
    services.advance(std::chrono::seconds(55));
    StatusMenuPopup popup;
    popup.open(mainMenu(services.services(), commands), QPoint(40, 40));
    QMenu* menu = popup.menu();
    for (QAction* entry : menu->actions()) {
        if (entry->menu() && entry->data().toString() == QStringLiteral("Fan Performance")) {
            menu->setActiveAction(entry);
            menu = isSubmenuOpen ? entry->menu() : menu;
            break;
        }
    }
    menu->ensurePolished();
    menu->resize(menu->sizeHint());
    return new PictureOf(*menu);
}

std::unique_ptr<QWidget> statusSheet(SimulatedServices& services) {
    auto sheet = std::make_unique<Sheet>(QSize(860, 240));
    sheet->place(strip(services), QPoint(20, 20));
    sheet->place(new TrayPanel(PanelScheme::dark), QRect(20, 70, 400, 64));
    sheet->place(new TrayPanel(PanelScheme::light), QRect(440, 70, 400, 64));
    services.settings().activeMenubarModules.set({MenubarModuleType::cpuClusters, MenubarModuleType::thermal,
                                                  MenubarModuleType::network, MenubarModuleType::battery});
    services.settings().menubarDelimiter.set(MenubarDelimiter::pipe);
    services.keepAwake().deactivate();
    sheet->place(strip(services), QPoint(20, 150));
    services.settings().menubarIconStyle.set(MenubarIconStyle::iconOnly);
    sheet->place(strip(services), QPoint(20, 195));
    return sheet;
}

std::unique_ptr<QWidget> menuSheet(SimulatedServices&) {
    auto sheet = std::make_unique<Sheet>(QSize(700, 400));
    sheet->place(contextMenu(false), QPoint(24, 24));
    sheet->place(contextMenu(true), QPoint(366, 24));
    return sheet;
}

}  // namespace

std::vector<Scene> statusScenes() {
    Scene items;
    items.name = QStringLiteral("status-items");
    items.make = statusSheet;
    items.drive = [](SimulatedServices& services) {
        services.settings().showDedicatedFanItem.set(true);
        services.settings().showDedicatedKeepAwakeItem.set(true);
        services.settings().activeMenubarModules.set({MenubarModuleType::appIcon, MenubarModuleType::memory,
                                                      MenubarModuleType::cpuUsage, MenubarModuleType::fanSpeed});
        services.keepAwake().activate(KeepAwakeDuration::minutes15);
        services.advance(std::chrono::seconds(55));
    };
    items.atFractionalScales = true;
    Scene menus;
    menus.name = QStringLiteral("context-menu");
    menus.make = menuSheet;
    return {items, menus};
}

}  // namespace kestro::shots
