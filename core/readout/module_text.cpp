#include "core/readout/module_text.h"

#include "core/base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace kestro {

namespace {

template <typename... Args>
void append(std::string& text, fmt::format_string<Args...> format, Args&&... args) {
    fmt::format_to(std::back_inserter(text), format, std::forward<Args>(args)...);
}

std::string_view label(std::string_view text, bool isShown) {
    return isShown ? text : std::string_view();
}

void appendPercent(std::string& text, std::string_view prefix, bool hasData, double percent) {
    if (hasData) {
        append(text, "{}{}%", prefix, wholeNumber(percent));
    } else {
        append(text, "{}--", prefix);
    }
}

void appendFanSpeed(std::string& text, std::span<const FanTelemetry> fans) {
    if (fans.size() >= 2) {
        append(text, "L:{} R:{}", wholeNumber(fans[0].currentRPM), wholeNumber(fans[1].currentRPM));
    } else {
        append(text, "{} RPM", fans.empty() ? 0 : wholeNumber(fans[0].currentRPM));
    }
}

std::string_view profileText(FanProfile profile) {
    switch (profile) {
        case FanProfile::silent:
            return "🍃 SILENT";
        case FanProfile::normal:
            return "⚡ AUTO";
        case FanProfile::cool:
            return "❄️ COOL";
        case FanProfile::turbo:
            return "🔥 TURBO";
        case FanProfile::custom:
            return "🎛️ CUSTOM";
    }
    return {};
}

std::string_view powerModeText(SystemPowerMode mode) {
    switch (mode) {
        case SystemPowerMode::lowPower:
            return "🍃 LOW";
        case SystemPowerMode::balanced:
            return "⚡ AUTO";
        case SystemPowerMode::highPower:
            return "🚀 HIGH";
    }
    return {};
}

void appendNetRate(std::string& text, double bytesPerSec) {
    if (bytesPerSec >= 1e8) {
        append(text, "{}M", wholeNumber(bytesPerSec / 1e6));
    } else if (bytesPerSec >= 1e6) {
        const auto tenths = wholeNumber(bytesPerSec / 1e5);
        append(text, "{}.{}M", tenths / 10, tenths % 10);
    } else if (bytesPerSec >= 1e3) {
        append(text, "{}K", wholeNumber(bytesPerSec / 1e3));
    } else {
        append(text, "{}", wholeNumber(bytesPerSec));
    }
}

void appendNetwork(std::string& text, const NetworkTelemetry* network) {
    if (!network) {
        text += "↓-- ↑--";
        return;
    }
    text += "↓";
    appendNetRate(text, network->downloadBytesPerSec);
    text += " ↑";
    appendNetRate(text, network->uploadBytesPerSec);
}

void appendDisk(std::string& text, const DiskTelemetry* disk) {
    if (!disk) {
        text += "SSD --";
        return;
    }
    const double gigabytes = static_cast<double>(disk->freeBytes) / 1e9;
    if (gigabytes >= 1000) {
        append(text, "SSD {:.1f}T", gigabytes / 1000);
    } else {
        append(text, "SSD {:.0f}G", gigabytes);
    }
}

void appendBattery(std::string& text, const PowerTelemetry* power) {
    if (!power || !power->hasBattery) {
        text += "AC";
    } else {
        append(text, "{}{}%", power->isCharging ? "⚡" : "", wholeNumber(power->percentage));
    }
}

void appendKeepAwake(std::string& text, const ReadoutInputs& inputs) {
    if (!inputs.isKeepAwakeActive) {
        text += "☕ OFF";
    } else if (!inputs.keepAwakeRemainingSeconds) {
        text += "☕ ON";
    } else {
        append(text, "☕ {}m", wholeNumber(*inputs.keepAwakeRemainingSeconds) / 60);
    }
}

/// As many nines as the fan's maximum speed has digits, at least four. Depends only on the inventory, so that the
/// room a panel reserves stays constant.
int widestSpeed(bool isFast) {
    return isFast ? 99999 : 9999;
}

}  // namespace

std::string formattedText(MenubarModuleType module, const ReadoutInputs& inputs) {
    std::string text;
    appendFormattedText(text, module, inputs);
    return text;
}

void appendFormattedText(std::string& text, MenubarModuleType module, const ReadoutInputs& inputs) {
    switch (module) {
        case MenubarModuleType::appIcon:
            return;
        case MenubarModuleType::memory:
            return appendPercent(text, label("RAM ", inputs.showLabels), inputs.memory != nullptr,
                                 inputs.memory ? inputs.memory->usedPercentage() : 0);
        case MenubarModuleType::cpuUsage:
            return appendPercent(text, label("CPU ", inputs.showLabels), inputs.cpu != nullptr,
                                 inputs.cpu ? inputs.cpu->totalUsage : 0);
        case MenubarModuleType::cpuClusters:
            // The first cluster is the performance cores.
            appendPercent(text, "P:", inputs.cpu != nullptr, inputs.cpu ? inputs.cpu->cluster0Usage : 0);
            return appendPercent(text, " E:", inputs.cpu != nullptr, inputs.cpu ? inputs.cpu->cluster1Usage : 0);
        case MenubarModuleType::thermal:
            if (inputs.thermal && inputs.thermal->averageSoCTemp > 0) {
                append(text, "{}°C", wholeNumber(inputs.thermal->averageSoCTemp));
            } else {
                text += "--°C";
            }
            return;
        case MenubarModuleType::fanSpeed:
            return appendFanSpeed(text, inputs.fans);
        case MenubarModuleType::fanProfile:
            text += profileText(inputs.fanProfile);
            return;
        case MenubarModuleType::powerMode:
            text += powerModeText(inputs.powerMode);
            return;
        case MenubarModuleType::network:
            return appendNetwork(text, inputs.network);
        case MenubarModuleType::battery:
            return appendBattery(text, inputs.power);
        case MenubarModuleType::diskSpace:
            return appendDisk(text, inputs.disk);
        case MenubarModuleType::keepAwake:
            return appendKeepAwake(text, inputs);
    }
}

WidestTextInputs WidestTextInputs::of(const ReadoutInputs& inputs) {
    const auto isFast = [&inputs](std::size_t index) {
        return index < inputs.fans.size() && inputs.fans[index].maxRPM >= 10000;
    };
    return {.showLabels = inputs.showLabels,
            .hasBattery = inputs.power && inputs.power->hasBattery,
            .hasTwoFans = inputs.fans.size() >= 2,
            .areFansFast = {isFast(0), isFast(1)}};
}

void appendWidestText(std::string& text, MenubarModuleType module, const WidestTextInputs& inputs) {
    switch (module) {
        case MenubarModuleType::appIcon:
            return;
        case MenubarModuleType::memory:
            return appendPercent(text, label("RAM ", inputs.showLabels), true, 100);
        case MenubarModuleType::cpuUsage:
            return appendPercent(text, label("CPU ", inputs.showLabels), true, 100);
        case MenubarModuleType::cpuClusters:
            text += "P:100% E:100%";
            return;
        case MenubarModuleType::thermal:
            text += "100°C";
            return;
        case MenubarModuleType::fanSpeed:
            if (inputs.hasTwoFans) {
                append(text, "L:{} R:{}", widestSpeed(inputs.areFansFast[0]), widestSpeed(inputs.areFansFast[1]));
            } else {
                append(text, "{} RPM", widestSpeed(inputs.areFansFast[0]));
            }
            return;
        case MenubarModuleType::fanProfile:
            text += profileText(FanProfile::custom);
            return;
        case MenubarModuleType::powerMode:
            // The widest emoji with the widest word: the bolt may come from a narrower text font.
            text += "🚀 AUTO";
            return;
        case MenubarModuleType::network:
            text += "↓9999M ↑9999M";
            return;
        case MenubarModuleType::battery:
            text += inputs.hasBattery ? "⚡100%" : "AC";
            return;
        case MenubarModuleType::diskSpace:
            text += "SSD 1000G";
            return;
        case MenubarModuleType::keepAwake:
            text += "☕ 240m";
            return;
    }
}

std::string formatNetRate(double bytesPerSec) {
    std::string text;
    appendNetRate(text, bytesPerSec);
    return text;
}

}  // namespace kestro
