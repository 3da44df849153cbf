#include "readout/line_format.h"

#include <algorithm>

namespace kestro {

namespace {

constexpr std::string_view programName = "Kestro";

/// One line, whatever the service sends.
std::string singleLine(std::string text) {
    std::ranges::replace_if(
        text, [](char letter) { return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7f; }, ' ');
    return text;
}

std::string markup(std::string_view text) {
    std::string escaped;
    for (const char letter : text) {
        switch (letter) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            default:
                escaped += letter;
        }
    }
    return escaped;
}

/// A JSON string of a text without control characters.
std::string quoted(std::string_view text) {
    std::string json = "\"";
    for (const char letter : text) {
        if (letter == '"' || letter == '\\') {
            json += '\\';
        }
        json += letter;
    }
    return json + '"';
}

std::string textOf(const ShownReadout& readout) {
    return readout.text.empty() ? std::string(programName) : singleLine(readout.text);
}

std::string jsonLine(const ShownReadout& readout) {
    return "{\"text\":" + quoted(singleLine(readout.text)) +
           ",\"widest_text\":" + quoted(singleLine(readout.widestText)) +
           ",\"tooltip\":" + quoted(singleLine(readout.toolTip)) +
           ",\"symbol\":" + quoted(singleLine(readout.symbol)) +
           ",\"power_mode\":" + quoted(singleLine(readout.powerMode)) +
           ",\"keep_awake\":" + (readout.isKeepAwakeActive ? "true}" : "false}");
}

std::string waybarLine(const ShownReadout& readout) {
    std::string json = "{\"text\":" + quoted(markup(textOf(readout))) +
                       ",\"tooltip\":" + quoted(markup(singleLine(readout.toolTip))) + ",\"class\":[" +
                       quoted(singleLine(readout.powerMode));
    if (readout.isKeepAwakeActive) {
        json += ",\"keep-awake\"";
    }
    json += ']';
    if (readout.memoryPercent) {
        json += ",\"percentage\":" + std::to_string(std::clamp<std::int64_t>(*readout.memoryPercent, 0, 100));
    }
    return json + '}';
}

std::string i3barLine(const ShownReadout& readout) {
    return "[{\"name\":\"kestro\",\"full_text\":" + quoted(textOf(readout)) +
           ",\"min_width\":" + quoted(singleLine(readout.widestText)) + "}],";
}

std::string genmonLine(const ShownReadout& readout) {
    return "<txt>" + markup(textOf(readout)) + "</txt><txtclick>kestro-readout --show popover</txtclick><tool>" +
           markup(singleLine(readout.toolTip)) + "</tool>";
}

}  // namespace

std::string_view prologue(LineForm form) {
    // No stop signal: a bar stops its program while it is hidden, and then the bus would store every change for
    // it.
    return form == LineForm::i3bar ? "{\"version\":1,\"stop_signal\":0}\n[\n" : "";
}

std::string line(LineForm form, const std::optional<ShownReadout>& readout) {
    if (!readout) {
        return form == LineForm::i3bar ? "[]," : "";
    }
    switch (form) {
        case LineForm::plain:
            return textOf(*readout);
        case LineForm::json:
            return jsonLine(*readout);
        case LineForm::waybar:
            return waybarLine(*readout);
        case LineForm::i3bar:
            return i3barLine(*readout);
        case LineForm::genmon:
            return genmonLine(*readout);
    }
    return {};
}

}  // namespace kestro
