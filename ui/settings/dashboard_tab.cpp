#include "ui/settings/dashboard_tab.h"

#include "core/engine/telemetry_engine.h"
#include "ui/settings/settings_parts.h"

#include <algorithm>
#include <array>

namespace kestro {

namespace {

constexpr double symbolSize = 15;
constexpr int labelWidth = 170;
constexpr int choiceHeight = 28;
constexpr int choiceRowHeight = 46;
constexpr std::array<std::int64_t, 4> processCounts{5, 6, 8, 10};

}  // namespace

DashboardTab::DashboardTab(const KestroServices& services) : SettingsPane(services) {
    add(settings_parts::group("COLUMN VISIBILITY", columnsCard()));
    add(settings_parts::group("LIVE ACTIVITY TELEMETRY", activityCard()));
    SettingRow* pinned = switchRow("Float Dashboard On Top (Pinned)", 40, services.settings.isPinned);
    pinned->setSymbol(QStringLiteral("pin.fill"), symbolSize);
    add(settings_parts::group("WINDOW BEHAVIOR", new settings_parts::RowCard({pinned})));
}

QWidget* DashboardTab::columnsCard() {
    constexpr int rowHeight = 38;
    UserSettings& settings = services().settings;
    struct Column {
        const char* title;
        const char* symbol;
        Setting<bool>& setting;
    };
    const std::array columns{
        Column{"Compute & Silicon Core Topology", "cpu", settings.showCompute},
        Column{"Cooling & Thermal Architecture", "fanblades", settings.showCooling},
        Column{"Unified Memory & APFS Storage", "memorychip", settings.showMemory},
        Column{"Network Bandwidth & Power Delivery", "arrow.up.arrow.down", settings.showNetwork},
        Column{"Live Activity & Top Consumers Space", "waveform.path.ecg", settings.showTopProcesses},
    };
    std::vector<QWidget*> rows;
    for (const Column& column : columns) {
        SettingRow* row = switchRow(column.title, rowHeight, column.setting);
        row->setSymbol(Words(column.symbol), symbolSize);
        rows.push_back(row);
    }
    return new settings_parts::RowCard(rows);
}

QWidget* DashboardTab::activityCard() {
    UserSettings& settings = services().settings;
    const auto row = [](const char* label, QWidget* control) {
        return settings_parts::labelledRow(label, labelWidth, control, choiceRowHeight);
    };
    return new settings_parts::RowCard({
        row("Default Metric:", choice("Default Metric:", choiceHeight, settings.processSortMetric,
                                      [this] { services().engine.refreshProcesses(); })),
        row("Processes Displayed:", processCountChoice()),
        row("Temperature Units:", choice("Temperature Units:", choiceHeight, settings.temperatureUnit)),
    });
}

SegmentedChoice* DashboardTab::processCountChoice() {
    Setting<std::int64_t>& limit = services().settings.processCountLimit;
    std::vector<Segment> segments;
    for (const std::int64_t count : processCounts) {
        segments.push_back({QStringLiteral("Top %1").arg(count), QString()});
    }
    auto* control = new SegmentedChoice(std::move(segments), choiceHeight);
    control->setAccessibleName(QStringLiteral("Processes Displayed:"));
    control->onChosen([&limit](int index) { limit.set(processCounts[static_cast<std::size_t>(index)]); });
    follow(
        [control, &limit] {
            const auto found = std::ranges::find(processCounts, limit.get());
            control->setChosen(found == processCounts.end() ? -1
                                                            : static_cast<int>(found - processCounts.begin()));
        },
        limit);
    return control;
}

}  // namespace kestro
