#include "ui/settings/menubar_tab.h"

#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "ui/controls/composition.h"
#include "ui/settings/menubar_preview.h"
#include "ui/settings/module_row.h"
#include "ui/settings/settings_parts.h"

#include <algorithm>

namespace kestro {

MenubarTab::MenubarTab(const KestroServices& services) : SettingsPane(services) {
    add(settings_parts::group("LIVE MENU BAR PREVIEW", liveSimulatedMenubar()));
    add(settings_parts::group("DEDICATED MENU BAR EXTRAS", extrasCard()));
    add(modulesGroup());
    add(delimiterAndLabels());
    add(profileGroup());
}

QWidget* MenubarTab::liveSimulatedMenubar() {
    auto* preview = new MenubarPreview(services());
    const UserSettings& settings = services().settings;
    const TelemetryEngine& engine = services().engine;
    const KeepAwakeManager& keepAwake = services().keepAwake;
    follow([preview] { preview->refresh(); }, settings.activeMenubarModules, settings.menubarDelimiter,
           settings.showMenubarLabels, settings.menubarIconStyle, settings.showDedicatedKeepAwakeItem,
           settings.showDedicatedFanItem, engine.cpu, engine.memory, engine.fans, engine.thermals, engine.network,
           engine.power, engine.disk, keepAwake.isActive, keepAwake.remainingSeconds,
           services().fanManager.currentProfile, services().powerManager.currentMode);
    return new Card(preview, nullptr);
}

QWidget* MenubarTab::extrasCard() {
    constexpr int rowHeight = 44;
    constexpr double symbolSize = 15;
    UserSettings& settings = services().settings;
    SettingRow* keepAwake =
        switchRow("Dedicated Keep-Awake Status Bar Extra", rowHeight, settings.showDedicatedKeepAwakeItem);
    keepAwake->setSymbol(QStringLiteral("cup.and.saucer.fill"), symbolSize);
    keepAwake->setDescription(QStringLiteral("1-click toggle and preset countdowns beside macOS clock"));
    SettingRow* cooling =
        switchRow("Dedicated Cooling & Power Status Bar Extra", rowHeight, settings.showDedicatedFanItem);
    cooling->setSymbol(QStringLiteral("fanblades"), symbolSize);
    cooling->setDescription(
        QStringLiteral("Quick profile switcher (Silent / Normal / Cool / Turbo / Custom) and Low Power Mode"));
    return new settings_parts::RowCard({keepAwake, cooling});
}

QWidget* MenubarTab::modulesGroup() {
    return column(row(Insets{2, 0, 0, 0}, groupHeading("ACTIVE TELEMETRY MODULES"), spacer(),
                      text("Select items to display & arrange order").style(text_styles::settingDescription)),
                  space(7), modulesCard())
        .release();
}

QWidget* MenubarTab::modulesCard() {
    constexpr std::size_t columnLength = 6;
    Setting<std::vector<MenubarModuleType>>& modules = services().settings.activeMenubarModules;
    std::vector<QWidget*> columns;
    std::vector<QWidget*> column;
    for (const MenubarModuleType module : allCases<MenubarModuleType>()) {
        rows_.push_back(moduleRow(module));
        column.push_back(rows_.back());
        if (column.size() == columnLength) {
            columns.push_back(new settings_parts::RowStack(std::exchange(column, {})));
        }
    }
    drag_.onDropped([this, &modules](MenubarModuleType module, MenubarModuleType target) {
        setModules(placeModule(modules.get(), module, target));
    });
    follow([this] { showModules(); }, modules);
    auto* card = new settings_parts::RowCard(columns, Qt::Horizontal);
    card->setDividerInset(0);
    return card;
}

ModuleRow* MenubarTab::moduleRow(MenubarModuleType module) {
    Setting<std::vector<MenubarModuleType>>& modules = services().settings.activeMenubarModules;
    auto* option = new ModuleRow(module);
    option->onClick([this, module, &modules] { setModules(toggleModule(modules.get(), module)); });
    option->onMoveUp([this, module, &modules] { setModules(moveModuleUp(modules.get(), module)); });
    option->onMoveDown([this, module, &modules] { setModules(moveModuleDown(modules.get(), module)); });
    option->onDragged([this, option](const QPoint& position) { drag_.moveTo(*option, position); });
    option->onDragEnded([this, option](bool isDropped) { drag_.end(*option, isDropped); });
    return option;
}

void MenubarTab::setModules(MenubarModules modules) {
    if (modules != services().settings.activeMenubarModules.get()) {
        services().settings.activeMenubarModules.set(std::move(modules));
    } else {
        showModules();  // reverts the row, which already shows the rejected change
    }
}

void MenubarTab::showModules() {
    const auto& modules = services().settings.activeMenubarModules.get();
    for (ModuleRow* option : rows_) {
        const auto found = std::ranges::find(modules, option->module());
        const auto place = static_cast<std::size_t>(found - modules.begin());
        option->setPlace(found == modules.end() ? std::nullopt : std::optional(place), modules.size());
    }
}

QWidget* MenubarTab::delimiterAndLabels() {
    constexpr int height = 34;
    UserSettings& settings = services().settings;
    std::vector<Segment> titles;
    for (const MenubarDelimiter delimiter : allCases<MenubarDelimiter>()) {
        titles.push_back({Words(title(delimiter)), QString()});
    }
    auto* widget = new QWidget;
    auto* layout = new QHBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    layout->addWidget(
        settings_parts::group("SEPARATOR DELIMITER", choiceOf("Separator Delimiter", height, std::move(titles),
                                                              settings.menubarDelimiter)),
        3);
    layout->addWidget(settings_parts::group("MODULE LABELS", new settings_parts::RowCard(
                                                                 {switchRow("Show Metric Prefixes (e.g. RAM, CPU)",
                                                                            height, settings.showMenubarLabels)})),
                      2);
    return widget;
}

QWidget* MenubarTab::profileGroup() {
    SegmentedChoice* profile = choice("Refresh & Energy Profile", 30, services().settings.pollingProfile,
                                      [this] { services().engine.restartTimer(); });
    return settings_parts::group(
        "REFRESH & ENERGY PROFILE",
        column(
            Spacing(7), profile,
            row(Insets{2, 0, 0, 0},
                text("Eco mode uses 3.0s idle intervals for zero battery impact. High Precision samples at 2Hz.")
                    .style(text_styles::settingDescription)))
            .release());
}

}  // namespace kestro
