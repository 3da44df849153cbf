#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// A version as three numbers; missing ones are 0.
using VersionNumbers = std::array<std::int64_t, 3>;

/// The leading version numbers of `text`: "22.04.3 LTS" gives 22, 4, 3 and "6.9-rc1" gives 6, 9, 0. nullopt: it
/// does not start with a number.
std::optional<VersionNumbers> parseVersionNumbers(std::string_view text);

/// The fields of an os-release file (os-release(5)) that are in use. Absent: missing or unsuitable for display.
struct OsRelease {
    std::optional<std::string> name;
    std::optional<VersionNumbers> version;
};

/// The last assignment of a field wins; shell quotes and escapes are removed.
OsRelease parseOsRelease(std::string_view text);

}  // namespace kestro
