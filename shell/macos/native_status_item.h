#pragma once

#include "shell/macos/native_geometry.h"
#include "shell/macos/native_menu.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kestro {

/// Colours that follow the menu bar's appearance.
enum class NativeColor { label, secondaryLabel, systemOrange };

/// What an item of the menu bar shows. Text is UTF-8.
struct NativeStatusContent {
    std::string symbol{};  ///< name of a system symbol; empty: none
    std::string symbolDescription{};
    double symbolPointSize = 12;
    std::string title{};
    double titlePointSize = 12;
    double titleWeight = 0;  ///< NSFontWeight, -1..1
    NativeColor titleColor = NativeColor::label;
    std::string toolTip{};
    std::string accessibilityLabel{};

    friend bool operator==(const NativeStatusContent&, const NativeStatusContent&) = default;
};

/// A click on an item.
struct NativeClick {
    bool isSecondary = false;
    bool controlHeld = false;
};

/// An NSStatusItem; destroying it removes it from the menu bar. Main thread.
class NativeStatusItem {
public:
    virtual ~NativeStatusItem() = default;

    virtual void show(const NativeStatusContent& content) = 0;

    /// Where the item is on the screen; nullopt while it has no window.
    virtual std::optional<NativeRect> frame() const = 0;

    /// Opens the menu below the item, or at `position` when given, and returns once it has closed. The item may be
    /// destroyed in the meantime.
    virtual void popUp(const NativeMenu& menu, std::optional<NativePoint> position) = 0;
};

/// Adds items to the menu bar, which calls `onClick` when a button of the mouse is released over the item. The
/// system remembers an item's place under its identifier.
using NativeStatusItemFactory = std::function<std::unique_ptr<NativeStatusItem>(
    const std::string& identifier, std::function<void(NativeClick)> onClick)>;

/// The menu bar's own.
std::unique_ptr<NativeStatusItem> makeNativeStatusItem(const std::string& identifier,
                                                       std::function<void(NativeClick)> onClick);

}  // namespace kestro
