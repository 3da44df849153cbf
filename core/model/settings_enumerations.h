#pragma once

#include "core/base/enumeration.h"
#include "core/model/appearance_enumerations.h"
#include "core/model/menubar_enumerations.h"
#include "core/model/unit_enumerations.h"

#include <array>
#include <string_view>

namespace kestro {

/// The tabs of the settings window, in the order of its tab bar.
enum class SettingsTab { menubar, keepAwake, cooling, power, dashboard, appearance, sensors };

template <>
struct EnumerationTable<SettingsTab> {
    struct Row {
        SettingsTab value;
        std::string_view rawValue;
        std::string_view icon;
    };
    static constexpr std::array rows{
        Row{SettingsTab::menubar, "Menu Bar", "menubar.dock.rectangle"},
        Row{SettingsTab::keepAwake, "Keep-Awake", "cup.and.saucer.fill"},
        Row{SettingsTab::cooling, "Cooling & Fans", "fanblades"},
        Row{SettingsTab::power, "Power & Energy", "bolt.batteryblock"},
        Row{SettingsTab::dashboard, "Dashboard", "square.grid.2x2"},
        Row{SettingsTab::appearance, "Appearance", "paintbrush"},
        Row{SettingsTab::sensors, "Sensors", "cpu"},
    };
};

/// Symbol name of a tab.
constexpr std::string_view icon(SettingsTab tab) {
    return tableRow(tab).icon;
}

/// Sort key of the top-process list.
enum class ProcessSortMetric { cpu, memory };

template <>
struct EnumerationTable<ProcessSortMetric> {
    using Row = LabelRow<ProcessSortMetric>;
    static constexpr std::array rows{
        Row{ProcessSortMetric::cpu, "CPU Load (%)"},
        Row{ProcessSortMetric::memory, "Memory Footprint"},
    };
};

/// How often the engine samples. The labels show the idle interval first, then the active one.
enum class PollingProfile { eco, balanced, highPrecision };

template <>
struct EnumerationTable<PollingProfile> {
    struct Row {
        PollingProfile value;
        std::string_view rawValue;
        double activeInterval;
        double idleInterval;
    };
    static constexpr std::array rows{
        Row{PollingProfile::eco, "Eco Saver (3.0s / 1.5s)", 1.5, 3.0},
        Row{PollingProfile::balanced, "Balanced (2.0s / 1.0s)", 1.0, 2.0},
        Row{PollingProfile::highPrecision, "High Precision (1.0s / 0.5s)", 0.5, 1.0},
    };
};

/// Seconds between samples while a window is visible.
constexpr double activeInterval(PollingProfile profile) {
    return tableRow(profile).activeInterval;
}

/// Seconds between samples while only the status bar is visible.
constexpr double idleInterval(PollingProfile profile) {
    return tableRow(profile).idleInterval;
}

}  // namespace kestro
