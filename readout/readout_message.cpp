#include "readout/readout_message.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kestro {

namespace {

bool has(sd_bus_message& message, char type, const char* contents) {
    return sd_bus_message_verify_type(&message, type, contents) > 0;
}

/// The value of the variant at the current place if it has the type; skips any other.
template <typename Read>
void readVariant(sd_bus_message& message, const char* type, Read read) {
    if (!has(message, 'v', type)) {
        sd_bus_message_skip(&message, "v");
        return;
    }
    sd_bus_message_enter_container(&message, 'v', type);
    read();
    sd_bus_message_exit_container(&message);
}

void readText(sd_bus_message& message, std::string& text) {
    readVariant(message, "s", [&] {
        const char* value = nullptr;
        if (sd_bus_message_read(&message, "s", &value) > 0) {
            text = value;
        }
    });
}

void readProperty(sd_bus_message& message, std::string_view name, ShownReadout& readout) {
    if (name == "Text") {
        readText(message, readout.text);
    } else if (name == "WidestText") {
        readText(message, readout.widestText);
    } else if (name == "ToolTip") {
        readText(message, readout.toolTip);
    } else if (name == "Symbol") {
        readText(message, readout.symbol);
    } else if (name == "PowerMode") {
        readText(message, readout.powerMode);
    } else if (name == "KeepAwake") {
        readVariant(message, "(bx)", [&] {
            int isActive = 0;
            std::int64_t seconds = 0;
            if (sd_bus_message_read(&message, "(bx)", &isActive, &seconds) > 0) {
                readout.isKeepAwakeActive = isActive != 0;
            }
        });
    } else if (name == memoryFigure) {
        readVariant(message, "x", [&] {
            std::int64_t percent = 0;
            if (sd_bus_message_read(&message, "x", &percent) > 0) {
                readout.memoryPercent = percent;
            }
        });
    } else {
        sd_bus_message_skip(&message, "v");
    }
}

}  // namespace

bool readProperties(sd_bus_message& message, ShownReadout& readout) {
    if (sd_bus_message_enter_container(&message, 'a', "{sv}") <= 0) {
        return false;
    }
    while (sd_bus_message_enter_container(&message, 'e', "sv") > 0) {
        const char* name = nullptr;
        if (sd_bus_message_read(&message, "s", &name) > 0) {
            readProperty(message, name, readout);
        }
        sd_bus_message_exit_container(&message);
    }
    return sd_bus_message_exit_container(&message) >= 0;
}

void readLosses(sd_bus_message& message, ShownReadout& readout) {
    if (sd_bus_message_enter_container(&message, 'a', "s") <= 0) {
        return;
    }
    const char* name = nullptr;
    while (sd_bus_message_read(&message, "s", &name) > 0) {
        if (std::string_view(name) == memoryFigure) {
            readout.memoryPercent.reset();
        }
    }
    sd_bus_message_exit_container(&message);
}

}  // namespace kestro
