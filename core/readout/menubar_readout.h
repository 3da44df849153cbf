#pragma once

#include "core/readout/module_text.h"
#include "core/readout/readout_inputs.h"
#include "core/settings/menubar_enumerations.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kestro {

class UserSettings;

/// The symbol before the readout: its name in the symbol set, its spoken description, its size in points.
struct ReadoutSymbol {
    std::string_view name;
    std::string_view accessibilityDescription;
    int pointSize;

    friend bool operator==(const ReadoutSymbol&, const ReadoutSymbol&) = default;
};

/// Beside or instead of text, in the readout's own size.
inline constexpr ReadoutSymbol readoutSymbol{"waveform.path.ecg", "Kestro", 12};

/// Alone, for a list without any module, in the natural size of a status bar's icons.
inline constexpr ReadoutSymbol emptyReadoutSymbol{"waveform.path.ecg", "Kestro", 16};

/// The user's choice of what the readout shows and how. The modules are only referred to.
struct ReadoutLayout {
    std::span<const MenubarModuleType> modules;
    MenubarDelimiter delimiter = MenubarDelimiter::middleDot;

    /// `iconsAndText` shows what the modules say. `textOnly` drops the symbol as long as there is text.
    /// `iconOnly` shows the symbol, whether the list holds it or not, and no text.
    MenubarIconStyle iconStyle = MenubarIconStyle::iconsAndText;

    /// The layout as the settings stand now.
    static ReadoutLayout of(const UserSettings& settings);
};

/// The composed readout. Comparing two is the cheap way to see whether anything has changed.
struct Readout {
    std::optional<ReadoutSymbol> symbol;

    /// The title after the symbol, with the blank that sets it apart.
    std::string title;

    /// The texts of all modules, joined, whether the style shows them or not: for accessibility.
    std::string spokenText;

    friend bool operator==(const Readout&, const Readout&) = default;
};

/// Composes the readout from its modules in list order; the symbol always leads, wherever it is listed.
/// Pure; any thread.
Readout composeReadout(const ReadoutLayout& layout, const ReadoutInputs& inputs);

/// The same into `readout`, whose buffers are used again: nothing is allocated in steady state.
void composeReadout(const ReadoutLayout& layout, const ReadoutInputs& inputs, Readout& readout);

/// The widest that the readout can become on this machine, so that a panel can keep the room.
Readout widestReadout(const ReadoutLayout& layout, const WidestTextInputs& inputs);

/// The whole readout in one line for hosts that show no title: "Kestro: RAM 42% · 1420 RPM".
std::string readoutToolTip(const Readout& readout);

}  // namespace kestro
