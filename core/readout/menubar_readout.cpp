#include "core/readout/menubar_readout.h"

#include "core/settings/user_settings.h"

#include <algorithm>

namespace kestro {

namespace {

constexpr std::string_view applicationName = "Kestro";

std::optional<ReadoutSymbol> symbolFor(const ReadoutLayout& layout, bool hasText) {
    if (layout.modules.empty()) {
        return emptyReadoutSymbol;
    }
    const bool isListed = std::ranges::find(layout.modules, MenubarModuleType::appIcon) != layout.modules.end();
    switch (layout.iconStyle) {
        case MenubarIconStyle::iconsAndText:
            return isListed ? std::optional(readoutSymbol) : std::nullopt;
        case MenubarIconStyle::textOnly:
            return hasText ? std::nullopt : std::optional(readoutSymbol);
        case MenubarIconStyle::iconOnly:
            return readoutSymbol;
    }
    return std::nullopt;
}

template <typename AppendModule>
void compose(const ReadoutLayout& layout, Readout& readout, AppendModule appendModule) {
    auto& text = readout.spokenText;
    text.clear();
    for (const auto module : layout.modules) {
        if (module == MenubarModuleType::appIcon) {
            continue;
        }
        if (!text.empty()) {
            text += rawValue(layout.delimiter);
        }
        appendModule(text, module);
    }
    readout.symbol = symbolFor(layout, !text.empty());
    readout.title.clear();
    if (text.empty() || layout.iconStyle == MenubarIconStyle::iconOnly) {
        return;
    }
    if (readout.symbol) {
        readout.title += ' ';
    }
    readout.title += text;
}

}  // namespace

ReadoutLayout ReadoutLayout::of(const UserSettings& settings) {
    return {settings.activeMenubarModules.get(), settings.menubarDelimiter.get(), settings.menubarIconStyle.get()};
}

Readout composeReadout(const ReadoutLayout& layout, const ReadoutInputs& inputs) {
    Readout readout;
    composeReadout(layout, inputs, readout);
    return readout;
}

void composeReadout(const ReadoutLayout& layout, const ReadoutInputs& inputs, Readout& readout) {
    compose(layout, readout,
            [&inputs](std::string& text, MenubarModuleType module) { appendFormattedText(text, module, inputs); });
}

Readout widestReadout(const ReadoutLayout& layout, const WidestTextInputs& inputs) {
    Readout readout;
    compose(layout, readout,
            [&inputs](std::string& text, MenubarModuleType module) { appendWidestText(text, module, inputs); });
    return readout;
}

std::string readoutToolTip(const Readout& readout) {
    std::string toolTip(applicationName);
    if (!readout.spokenText.empty()) {
        toolTip += ": ";
        toolTip += readout.spokenText;
    }
    return toolTip;
}

}  // namespace kestro
