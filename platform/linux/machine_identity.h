#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// Whether a text of the firmware's tables says nothing: what makers leave in when they fill in no name, such as
/// "To Be Filled By O.E.M." or "System Product Name".
bool isFirmwareFiller(std::string_view text);

/// The processor's name from /proc/cpuinfo: "model name" on PCs, its counterparts on other architectures, and
/// the maker and part number put into words on Arm, where there is no name. nullopt: none of them.
std::optional<std::string> parseProcessorBrand(std::string_view cpuInfo);

/// The name of an Apple chip from the device tree's "compatible" list, whose texts are separated by zero bytes:
/// "apple,t6000" is an Apple M1 Pro. nullopt: no chip of that maker, or one that is not known by name.
std::optional<std::string> appleChipName(std::string_view compatible);

/// The machine's model: the device tree's, else the firmware's name of the product, else that of its mainboard,
/// else the kernel's name of the architecture. nullopt: nothing is known.
std::optional<std::string> readMachineModel(const std::string& root);

/// The processor's name: an Apple chip's by the device tree, else by /proc/cpuinfo. nullopt: nothing is known.
std::optional<std::string> readProcessorBrand(const std::string& root);

}  // namespace kestro
