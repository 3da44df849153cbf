#pragma once

#include "core/base/enumeration.h"

#include <array>
#include <string_view>

namespace kestro {

/// How the menu-bar item shows its content.
enum class MenubarIconStyle { iconsAndText, textOnly, iconOnly };

template <>
struct EnumerationTable<MenubarIconStyle> {
    using Row = LabelRow<MenubarIconStyle>;
    static constexpr std::array rows{
        Row{MenubarIconStyle::iconsAndText, "Icons & Text"},
        Row{MenubarIconStyle::textOnly, "Text Only"},
        Row{MenubarIconStyle::iconOnly, "Icon Only"},
    };
};

/// The older, fixed choice of what the menu-bar item shows. The module list has replaced it in the readout; the
/// engine still uses it to decide what to sample while idle.
enum class MenubarDisplayMode { memoryAndFan, combined, tripleGlance, fansOnly, memoryOnly, cpuOnly, iconOnly };

template <>
struct EnumerationTable<MenubarDisplayMode> {
    using Row = LabelRow<MenubarDisplayMode>;
    static constexpr std::array rows{
        Row{MenubarDisplayMode::memoryAndFan, "Memory & Fan (Default)"},
        Row{MenubarDisplayMode::combined, "CPU & Fan"},
        Row{MenubarDisplayMode::tripleGlance, "Triple (RAM / CPU / Fan)"},
        Row{MenubarDisplayMode::fansOnly, "Fan Speed Only"},
        Row{MenubarDisplayMode::memoryOnly, "Memory Only"},
        Row{MenubarDisplayMode::cpuOnly, "CPU Only"},
        Row{MenubarDisplayMode::iconOnly, "Icon Only"},
    };
};

/// The separator between two modules; its raw value is the exact text inserted.
enum class MenubarDelimiter { middleDot, pipe, slash, space };

template <>
struct EnumerationTable<MenubarDelimiter> {
    struct Row {
        MenubarDelimiter value;
        std::string_view rawValue;
        std::string_view title;
    };
    static constexpr std::array rows{
        Row{MenubarDelimiter::middleDot, " · ", "Middle Dot ( · )"},
        Row{MenubarDelimiter::pipe, " | ", "Vertical Bar ( | )"},
        Row{MenubarDelimiter::slash, " / ", "Slash ( / )"},
        Row{MenubarDelimiter::space, "  ", "Double Space (   )"},
    };
};

/// The label in the picker.
constexpr std::string_view title(MenubarDelimiter delimiter) {
    return tableRow(delimiter).title;
}

/// The modules that the menu-bar readout can show.
enum class MenubarModuleType {
    appIcon,
    memory,
    cpuUsage,
    cpuClusters,
    thermal,
    fanSpeed,
    fanProfile,
    powerMode,
    network,
    battery,
    diskSpace,
    keepAwake
};

template <>
struct EnumerationTable<MenubarModuleType> {
    struct Row {
        MenubarModuleType value;
        std::string_view rawValue;
        std::string_view displayName;
        std::string_view iconName;
        std::string_view previewSample;
    };
    static constexpr std::array rows{
        Row{MenubarModuleType::appIcon, "appIcon", "Kestro Icon", "waveform.path.ecg", "●"},
        Row{MenubarModuleType::memory, "memory", "Unified Memory", "memorychip", "RAM 42%"},
        Row{MenubarModuleType::cpuUsage, "cpuUsage", "Total CPU Load", "cpu", "CPU 18%"},
        Row{MenubarModuleType::cpuClusters, "cpuClusters", "P/E Core Clusters", "square.grid.2x2", "P:24% E:8%"},
        Row{MenubarModuleType::thermal, "thermal", "SoC Temperature", "thermometer.medium", "48°C"},
        Row{MenubarModuleType::fanSpeed, "fanSpeed", "Fan RPM Speeds", "fanblades", "1,420 RPM"},
        Row{MenubarModuleType::fanProfile, "fanProfile", "Fan Performance Profile", "slider.horizontal.3",
            "⚡ AUTO"},
        Row{MenubarModuleType::powerMode, "powerMode", "Power Delivery Mode", "bolt.batteryblock", "⚡ HIGH"},
        Row{MenubarModuleType::network, "network", "Network Throughput", "arrow.up.arrow.down", "↓ 1.2M ↑ 240K"},
        Row{MenubarModuleType::battery, "battery", "Battery & Power", "battery.100", "⚡ 98%"},
        Row{MenubarModuleType::diskSpace, "diskSpace", "Available Storage", "internaldrive", "SSD 1.4 TB"},
        Row{MenubarModuleType::keepAwake, "keepAwake", "Keep-Awake Telemetry", "cup.and.saucer.fill", "☕ ON"},
    };
};

constexpr std::string_view displayName(MenubarModuleType module) {
    return tableRow(module).displayName;
}

/// Fixed sample text for the settings window; never derived from live data.
constexpr std::string_view previewSample(MenubarModuleType module) {
    return tableRow(module).previewSample;
}

}  // namespace kestro
