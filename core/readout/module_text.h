#pragma once

#include "core/readout/readout_inputs.h"
#include "core/settings/menubar_enumerations.h"

#include <array>
#include <string>

namespace kestro {

/// The live text of one module of the readout; empty for the application's icon, which is no text. Figures are
/// truncated to whole numbers. Temperatures are always in degrees Celsius, and only memory and processor load
/// have labels. Pure; any thread.
std::string formattedText(MenubarModuleType module, const ReadoutInputs& inputs);

/// The same, appended to `text`, so that a caller can keep one buffer.
void appendFormattedText(std::string& text, MenubarModuleType module, const ReadoutInputs& inputs);

/// All that the widest texts depend on; no reading changes it.
struct WidestTextInputs {
    bool showLabels = true;
    bool hasBattery = false;
    bool hasTwoFans = false;

    /// Whether the left and the right fan's maximum has five digits.
    std::array<bool, 2> areFansFast{};

    static WidestTextInputs of(const ReadoutInputs& inputs);

    friend bool operator==(const WidestTextInputs&, const WidestTextInputs&) = default;
};

/// Appends the widest text that the module can show on this machine. A fan above its maximum may take more.
void appendWidestText(std::string& text, MenubarModuleType module, const WidestTextInputs& inputs);

/// A rate in bytes per second: "850", "240K", "1.2M"; from a hundred million on without the decimal,
/// "125M". Truncated.
std::string formatNetRate(double bytesPerSec);

}  // namespace kestro
