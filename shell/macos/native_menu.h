#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kestro {

// NSEventModifierFlags.
inline constexpr std::uint64_t shiftModifier = 1U << 17;
inline constexpr std::uint64_t controlModifier = 1U << 18;
inline constexpr std::uint64_t optionModifier = 1U << 19;
inline constexpr std::uint64_t commandModifier = 1U << 20;

/// The key that triggers an entry, as NSMenuItem has it: a lower-case character and NSEventModifierFlags.
struct KeyEquivalent {
    std::string key;  ///< empty: none
    std::uint64_t modifiers = 0;

    friend bool operator==(const KeyEquivalent&, const KeyEquivalent&) = default;
};

/// One entry of an NSMenu. Text is UTF-8.
struct NativeMenuEntry {
    bool isSeparator = false;
    std::string title{};
    std::string symbol{};  ///< name of a system symbol; empty: none
    KeyEquivalent keyEquivalent{};
    bool isEnabled = true;
    bool isChecked = false;
    std::size_t number = 0;  ///< for `NativeMenu::choose`
    std::vector<NativeMenuEntry> submenu{};

    friend bool operator==(const NativeMenuEntry&, const NativeMenuEntry&) = default;
};

/// A menu that is about to open.
struct NativeMenu {
    std::vector<NativeMenuEntry> entries;

    /// Called with the number of the chosen entry once the menu has closed.
    std::function<void(std::size_t number)> choose;
};

}  // namespace kestro
