#pragma once

#include "core/model/menubar_enumerations.h"
#include "core/readout/module_text.h"
#include "core/readout/readout_inputs.h"

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

/// Next to or in place of text, in the readout's own size.
inline constexpr ReadoutSymbol readoutSymbol{"waveform.path.ecg", "Kestro", 12};

/// Alone, for an empty module list, in the natural size of a status-bar icon.
inline constexpr ReadoutSymbol emptyReadoutSymbol{"waveform.path.ecg", "Kestro", 16};

/// The user's choice of what the readout shows and how. Does not own the modules.
struct ReadoutLayout {
    std::span<const MenubarModuleType> modules;
    MenubarDelimiter delimiter = MenubarDelimiter::middleDot;

    /// `iconsAndText` shows what is listed. `textOnly` hides the symbol whenever there is text. `iconOnly` shows
    /// only the symbol, listed or not.
    MenubarIconStyle iconStyle = MenubarIconStyle::iconsAndText;

    /// The layout from the current settings.
    static ReadoutLayout of(const UserSettings& settings);
};

/// The composed readout. Comparing two is a cheap way to detect changes.
struct Readout {
    std::optional<ReadoutSymbol> symbol;

    /// The title after the symbol, including the blank that separates them.
    std::string title;

    /// The joined texts of all modules, even if the style hides them: for accessibility.
    std::string spokenText;

    friend bool operator==(const Readout&, const Readout&) = default;
};

/// Composes the readout from its modules in list order; the symbol always comes first, wherever it is listed.
/// Pure; any thread.
Readout composeReadout(const ReadoutLayout& layout, const ReadoutInputs& inputs);

/// The same, but into `readout`, reusing its buffers: no allocation in steady state.
void composeReadout(const ReadoutLayout& layout, const ReadoutInputs& inputs, Readout& readout);

/// The widest readout possible on this machine, so that a panel can reserve the room.
Readout widestReadout(const ReadoutLayout& layout, const WidestTextInputs& inputs);

/// The whole readout in one line, for hosts that show no title: "Kestro: RAM 42% · 1420 RPM".
std::string readoutToolTip(const Readout& readout);

}  // namespace kestro
