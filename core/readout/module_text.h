#pragma once

#include "core/readout/readout_inputs.h"
#include "core/settings/menubar_enumerations.h"

#include <string>

namespace kestro {

/// The live text of one module of the readout; empty for the application's icon, which is no text. Figures are
/// truncated to whole numbers. Temperatures are always in degrees Celsius, and only memory and processor load
/// have labels. Pure; any thread.
std::string formattedText(MenubarModuleType module, const ReadoutInputs& inputs);

/// The same, appended to `text`, so that a caller can keep one buffer.
void appendFormattedText(std::string& text, MenubarModuleType module, const ReadoutInputs& inputs);

/// Appends the widest text that the module can show on this machine: it depends on the inputs only by the
/// fans, the presence of a battery and the labels, none of which changes from one sample to the next.
void appendWidestText(std::string& text, MenubarModuleType module, const ReadoutInputs& inputs);

/// A rate in bytes per second: "850", "240K", "1.2M"; from a hundred million on without the decimal,
/// "125M". Truncated.
std::string formatNetRate(double bytesPerSec);

}  // namespace kestro
