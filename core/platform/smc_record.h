#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestro {

/// The parameter record of the controller's user client, 80 bytes in both directions, little-endian. Only the
/// fields below are used; all others are 0.
using SMCRecord = std::array<std::uint8_t, 80>;

/// The layout of the record. Pure; any thread.
namespace smc {

inline constexpr std::size_t keyOffset = 0;       ///< 4 bytes: the key's code
inline constexpr std::size_t sizeOffset = 28;     ///< 4 bytes: the value's length in bytes
inline constexpr std::size_t typeOffset = 32;     ///< 4 bytes: the code of the value's type
inline constexpr std::size_t resultOffset = 40;   ///< 1 byte
inline constexpr std::size_t commandOffset = 42;  ///< 1 byte
inline constexpr std::size_t bytesOffset =
    48;  ///< 32 bytes: the value; most significant byte first, except for floats

inline constexpr std::uint8_t readBytesCommand = 5;
inline constexpr std::uint8_t readInformationCommand = 9;  ///< returns size and type

/// Packs text big-endian into a code; only the last four bytes of a longer text are kept.
constexpr std::uint32_t code(std::string_view text) {
    std::uint32_t packed = 0;
    for (const char character : text) {
        packed = packed << 8 | static_cast<std::uint8_t>(character);
    }
    return packed;
}

constexpr std::uint32_t read32(const SMCRecord& record, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t byte = 4; byte-- > 0;) {
        value = value << 8 | record[offset + byte];
    }
    return value;
}

constexpr void write32(SMCRecord& record, std::size_t offset, std::uint32_t value) {
    for (std::size_t byte = 0; byte < 4; ++byte) {
        record[offset + byte] = static_cast<std::uint8_t>(value >> (8 * byte));
    }
}

}  // namespace smc

}  // namespace kestro
