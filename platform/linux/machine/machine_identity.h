#pragma once

#include "platform/linux/machine/cpu_topology.h"

#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// The processor's name from /proc/cpuinfo: "model name" on PCs, its equivalents on other architectures, or on
/// Arm, which has no name, text made from the maker and part numbers. Of several kinds of cores, the one of
/// greatest capacity gives the name, without capacities the last. nullopt: none of these.
std::optional<std::string> parseProcessorBrand(std::string_view cpuInfo, const CoreFigures& capacityOfCore = {});

/// The name of an Apple chip from the device tree's "compatible" list, whose entries are separated by zero bytes:
/// "apple,t6000" is an Apple M1 Pro. nullopt: not an Apple chip, or an unknown one.
std::optional<std::string> appleChipName(std::string_view compatible);

/// The machine's model: from the device tree, or else the name of the hypervisor or cloud, the firmware's product
/// name, its mainboard name, or the kernel's architecture name. nullopt: none of these.
std::optional<std::string> readMachineModel(const std::string& root);

/// The processor's name: for an Apple chip from the device tree, otherwise from /proc/cpuinfo. nullopt: unknown.
std::optional<std::string> readProcessorBrand(const std::string& root);

}  // namespace kestro
