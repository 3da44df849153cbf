#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kestro {

/// The values of a running Kestro that this program prints. Texts are UTF-8, as the bus guarantees; nothing else
/// is certain about them.
struct ShownReadout {
    std::string text;
    std::string widestText;
    std::string toolTip;
    std::string symbol;  ///< an icon's name; empty: the user wants none
    std::string powerMode;
    bool isKeepAwakeActive = false;
    std::optional<std::int64_t> memoryPercent;

    friend bool operator==(const ShownReadout&, const ShownReadout&) = default;
};

}  // namespace kestro
