#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kestro {

/// The name of an Arm core from the implementer and the part number in its main ID register (MIDR_EL1), such as
/// "Arm Cortex-X925"; the maker with "processor" if only the maker is known. nullopt: neither is.
std::optional<std::string> armProcessorName(std::uint32_t implementer, std::uint32_t part);

}  // namespace kestro
