#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "readout/shown_readout.h"

namespace kestro {

/// The forms of a line, one for each kind of panel.
enum class LineForm {
    plain,   ///< the text
    json,    ///< a JSON object with all that a panel's own widget needs, without markup
    waybar,  ///< a JSON object for a custom module of Waybar, with Pango markup escaped
    i3bar,   ///< a status line of the i3bar protocol, version 1, in the endless array that `prologue` opens
    genmon,  ///< the tags of Xfce's generic monitor
};

/// What precedes the first line; may be empty.
std::string_view prologue(LineForm form);

/// The line for a readout, without its newline; nullopt: Kestro is not running. Never contains a control
/// character, so that each line of a reader is one readout. A readout without text shows the program's name.
std::string line(LineForm form, const std::optional<ShownReadout>& readout);

}  // namespace kestro
