#include "core/base/program_version.h"
#include "tests/ui/settings/settings_view_test.h"
#include "ui/controls/badge.h"
#include "ui/controls/option_tile.h"
#include "ui/controls/swatch.h"

#include <algorithm>

namespace kestro {
namespace {

/// Whether `left` precedes `right` in reading order: higher up, or further left on the same line.
bool isBefore(const QRect& left, const QRect& right) {
    const bool isSameLine = left.top() <= right.bottom() && right.top() <= left.bottom();
    return isSameLine ? left.left() < right.left() : left.top() < right.top();
}

/// The texts that a widget itself shows, without those of its children.
std::vector<QString> textsOn(const QWidget& widget) {
    if (const auto* label = qobject_cast<const TextLabel*>(&widget)) {
        return {label->text()};
    }
    if (const auto* badge = qobject_cast<const Badge*>(&widget)) {
        return {badge->text()};
    }
    if (const auto* button = qobject_cast<const Button*>(&widget)) {
        return {button->text()};
    }
    std::vector<QString> texts;
    if (const auto* choice = qobject_cast<const SegmentedChoice*>(&widget)) {
        for (const AccessibleInfo& segment : choice->accessibleParts()) {
            texts.push_back(segment.name);
        }
    }
    if (const auto* option = qobject_cast<const SettingRow*>(&widget)) {
        texts = {option->accessibleInfo().name, option->accessibleInfo().description};
    }
    if (qobject_cast<const Swatch*>(&widget) != nullptr || qobject_cast<const OptionTile*>(&widget) != nullptr) {
        texts = {static_cast<const View&>(widget).accessibleInfo().name};
    }
    return texts;
}

/// Appends all visible texts in reading order. Of two columns side by side, the left one comes first.
void read(const QWidget& widget, std::vector<std::string>& lines) {
    for (const QString& text : textsOn(widget)) {
        if (!text.isEmpty()) {
            lines.push_back(text.toStdString());
        }
    }
    std::vector<const QWidget*> children;
    for (const QObject* child : widget.children()) {
        const auto* part = qobject_cast<const QWidget*>(child);
        if (part != nullptr && part->isVisible()) {
            children.push_back(part);
        }
    }
    std::ranges::stable_sort(children, isBefore, &QWidget::geometry);
    for (const QWidget* child : children) {
        read(*child, lines);
    }
}

/// Collects all texts of a tab in reading order.
class SettingsTextsTest : public SettingsViewFixture {
protected:
    std::vector<std::string> texts(SettingsTab tab) {
        open(tab, [](SimulatedMac& mac) { mac.smc.setFans(std::array{1420.0F, 1512.0F}); });
        settings().activeMenubarModules.set({MenubarModuleType::memory});
        QApplication::processEvents();
        std::vector<std::string> lines;
        read(*view_->content(tab), lines);
        return lines;
    }

    using Lines = std::vector<std::string>;
};

TEST_F(SettingsTextsTest, ReadsTheMenuBarTab) {
    EXPECT_EQ(texts(SettingsTab::menubar),
              (Lines{
                  "LIVE MENU BAR PREVIEW",
                  "DEDICATED MENU BAR EXTRAS",
                  "Dedicated Keep-Awake Status Bar Extra",
                  "1-click toggle and preset countdowns beside macOS clock",
                  "Dedicated Cooling & Power Status Bar Extra",
                  "Quick profile switcher (Silent / Normal / Cool / Turbo / Custom) and Low Power Mode",
                  "ACTIVE TELEMETRY MODULES",
                  "Select items to display & arrange order",
                  "Kestro Icon, hidden",
                  "●",
                  "Unified Memory, shown, position 1",
                  "RAM 42%",
                  "1",
                  "Total CPU Load, hidden",
                  "CPU 18%",
                  "P/E Core Clusters, hidden",
                  "P:24% E:8%",
                  "SoC Temperature, hidden",
                  "48°C",
                  "Fan RPM Speeds, hidden",
                  "1,420 RPM",
                  "Fan Performance Profile, hidden",
                  "⚡ AUTO",
                  "Power Delivery Mode, hidden",
                  "⚡ HIGH",
                  "Network Throughput, hidden",
                  "↓ 1.2M ↑ 240K",
                  "Battery & Power, hidden",
                  "⚡ 98%",
                  "Available Storage, hidden",
                  "SSD 1.4 TB",
                  "Keep-Awake Telemetry, hidden",
                  "☕ ON",
                  "SEPARATOR DELIMITER",
                  "Middle Dot ( · )",
                  "Vertical Bar ( | )",
                  "Slash ( / )",
                  "Double Space (   )",
                  "MODULE LABELS",
                  "Show Metric Prefixes (e.g. RAM, CPU)",
                  "REFRESH & ENERGY PROFILE",
                  "Eco Saver (3.0s / 1.5s)",
                  "Balanced (2.0s / 1.0s)",
                  "High Precision (1.0s / 0.5s)",
                  "Eco mode uses 3.0s idle intervals for zero battery impact. High Precision samples at 2Hz.",
              }));
}

TEST_F(SettingsTextsTest, ReadsTheKeepAwakeTab) {
    EXPECT_EQ(texts(SettingsTab::keepAwake), (Lines{
                                                 "KEEP-AWAKE INACTIVE",
                                                 "Sleep timer follows macOS Energy Saver preferences",
                                                 "Activate Now",
                                                 "SLEEP PREVENTION SCOPE",
                                                 "System Only (Display May Sleep)",
                                                 "Allows screen to turn off normally while preserving background "
                                                 "renders, network transfers, and compute",
                                                 "Display & System",
                                                 "Prevents both display dimming/sleep and core system hibernation",
                                                 "DEFAULT SESSION DURATION",
                                                 "Indefinitely",
                                                 "15 Minutes",
                                                 "30 Minutes",
                                                 "1 Hour",
                                                 "2 Hours",
                                                 "4 Hours",
                                                 "BATTERY AUTO-PROTECTION",
                                                 "Deactivate When Battery Falls Below Threshold",
                                                 "Prevents unintended battery drain when MacBook is unplugged",
                                                 "Cutoff Level:",
                                                 "20%",
                                             }));
}

TEST_F(SettingsTextsTest, ReadsTheCoolingTab) {
    EXPECT_EQ(texts(SettingsTab::cooling),
              (Lines{
                  "2 ACTIVE SILICON TURBINES",
                  "Independent AppleSMC tachometers with dynamic PWM curves",
                  "Left Fan",
                  "1420 RPM",
                  "Safe: 7300",
                  "Right Fan",
                  "1512 RPM",
                  "Safe: 7300",
                  "PERFORMANCE MODE",
                  "Silent",
                  "Normal (Auto)",
                  "Cool",
                  "Turbo",
                  "Custom Curves",
                  "Active Profile: Normal (Auto). Modifying curves below engages Custom Curves mode.",
                  "Engage Custom Curves",
                  "FAN CURVE STUDIO",
                  "Independently address Left and Right exhaust fans or synchronize in linked mode",
                  "Fans Linked",
                  "Left Fan (CPU Exhaust)",
                  "Right Fan (GPU Exhaust)",
                  "PRESETS:",
                  "Quiet Studio",
                  "Balanced Studio",
                  "Aggressive Cooling",
                  "Linear Standard",
                  "DRIVING TEMPERATURE SENSOR",
                  "Average SoC Temp",
                  "Smooth overall Apple Silicon substrate temperature",
                  "Peak Silicon Die",
                  "Instantaneous hottest thermal node across CPU/GPU cores",
                  "Battery Pack",
                  "Chemical pack temperature during intensive charging",
                  "RESPONSE CURVE GEOMETRY",
                  "Stepped Acoustic Stages",
                  "Discrete non-oscillating RPM tiers (Idle, Medium, High, Max)",
                  "Linear Proportional",
                  "Direct mathematical 1:1 progression between thresholds",
                  "Acoustic S-Curve",
                  "Whisper-quiet idle floor, gentle mid-roll, firm thermal ramp",
                  "THERMAL THRESHOLD ANCHORS",
                  "Baseline Idle Temp (T_low):",
                  "48°C",
                  "Fan stays at minimum baseline speed below this temperature",
                  "Full Ramp Ceiling (T_high):",
                  "84°C",
                  "Fan reaches maximum target RPM at or above this temperature",
                  "ACOUSTIC SMOOTHING & HYSTERESIS",
                  "Ramp Smoothing Window:",
                  "3.0s",
                  "Damps brief 1-2s spikes to eliminate fan hunting and whoosh cycles",
                  "Acoustic Ceiling Cap:",
                  "Unconstrained turbine ceiling (Full 100% capacity)",
              }));
}

TEST_F(SettingsTextsTest, ReadsThePowerTab) {
    EXPECT_EQ(texts(SettingsTab::power), (Lines{
                                             "87%",
                                             "Health Condition: Normal",
                                             "4h 12m remaining",
                                             "SYSTEM POWER DELIVERY MODES",
                                             "Low Power",
                                             "Reduces energy usage to increase battery life and quiet fans",
                                             "Balanced (Automatic)",
                                             "Dynamically optimizes CPU/GPU frequencies and thermal envelopes",
                                             "ACTIVE",
                                             "High Power",
                                             "Optimizes cooling and clocks for sustained intensive workflows",
                                         }));
}

TEST_F(SettingsTextsTest, ReadsTheDashboardTab) {
    EXPECT_EQ(texts(SettingsTab::dashboard), (Lines{
                                                 "COLUMN VISIBILITY",
                                                 "Compute & Silicon Core Topology",
                                                 "Cooling & Thermal Architecture",
                                                 "Unified Memory & APFS Storage",
                                                 "Network Bandwidth & Power Delivery",
                                                 "Live Activity & Top Consumers Space",
                                                 "LIVE ACTIVITY TELEMETRY",
                                                 "Default Metric:",
                                                 "CPU Load (%)",
                                                 "Memory Footprint",
                                                 "Processes Displayed:",
                                                 "Top 5",
                                                 "Top 6",
                                                 "Top 8",
                                                 "Top 10",
                                                 "Temperature Units:",
                                                 "Celsius (°C)",
                                                 "Fahrenheit (°F)",
                                                 "WINDOW BEHAVIOR",
                                                 "Float Dashboard On Top (Pinned)",
                                             }));
}

TEST_F(SettingsTextsTest, ReadsTheAppearanceTab) {
    EXPECT_EQ(texts(SettingsTab::appearance),
              (Lines{
                  "STUDIO COLOR PALETTE",
                  "Cryogenic Azure",
                  "Thermal Infrared",
                  "Obsidian Emerald",
                  "Velvet Lilac",
                  "Monolith Titanium",
                  "PROCESS-INK HALFTONE FIELD",
                  "Dot Intensity",
                  "Off",
                  "Subtle (12%)",
                  "Standard (25%)",
                  "Bold (45%)",
                  "Geometric Distribution Pattern",
                  "Header Band",
                  "Thermal Plume",
                  "Ambient Field",
                  "OPTICAL GLASS & BLUR FADES",
                  "Progressive Edge Blur Fades",
                  "Softens window and popover edges with a variable gradient rolloff into desktop wallpaper",
                  "Glass Vibrancy:",
                  "Deep Frosted (.underWindowBackground)",
                  "HUD Contrast (.hudWindow)",
                  "Subtle Tint (.popover)",
              }));
}

TEST_F(SettingsTextsTest, ReadsTheSensorsTab) {
    EXPECT_EQ(texts(SettingsTab::sensors), (Lines{
                                               "AUTHENTIC HARDWARE INTERFACES",
                                               "Hardware Platform",
                                               "Apple M2 Pro (Mac14,9)",
                                               "Silicon Verified",
                                               "AppleSMC Interface",
                                               "Direct IOServiceOpen (Client 0)",
                                               "2 Active Turbines",
                                               "IOHIDEventSystemClient",
                                               "20 Silicon Thermal Nodes",
                                               "Active",
                                               "Host Processor Info",
                                               "12 Total Silicon Cores (8 Performance + 4 Efficiency)",
                                               "Active",
                                               "Mach VM Subsystem",
                                               "64-bit Statistics + Swap Usage",
                                               "Active",
                                               "IOPowerSources",
                                               "4h 12m remaining",
                                               "IOPM Verified",
                                               "Kestro " + std::string(programVersion()),
                                           }));
}

}  // namespace
}  // namespace kestro
