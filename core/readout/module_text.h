#pragma once

#include "core/model/menubar_enumerations.h"
#include "core/readout/readout_inputs.h"

#include <array>
#include <string>

namespace kestro {

/// The live text of one readout module; empty for the application icon. Figures are truncated to whole numbers.
/// Temperatures are always in degrees Celsius, and only memory and CPU load have labels. Pure; any thread.
std::string formattedText(MenubarModuleType module, const ReadoutInputs& inputs);

/// The same, appended to `text` so that a caller can reuse one buffer.
void appendFormattedText(std::string& text, MenubarModuleType module, const ReadoutInputs& inputs);

/// Everything that the widest texts depend on; no reading changes it.
struct WidestTextInputs {
    bool showLabels = true;
    bool hasBattery = false;
    bool hasTwoFans = false;

    /// Whether the left and the right fan's maximum speed has five digits.
    std::array<bool, 2> areFansFast{};

    static WidestTextInputs of(const ReadoutInputs& inputs);

    friend bool operator==(const WidestTextInputs&, const WidestTextInputs&) = default;
};

/// Appends the widest text that the module can show on this machine. A fan above its maximum may need more room.
void appendWidestText(std::string& text, MenubarModuleType module, const WidestTextInputs& inputs);

/// A rate in bytes per second: "850", "240K", "1.2M"; without the decimal from 100 million on, "125M". Truncated.
std::string formatNetRate(double bytesPerSec);

}  // namespace kestro
