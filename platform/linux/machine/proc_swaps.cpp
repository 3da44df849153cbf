#include "platform/linux/machine/proc_swaps.h"

#include "core/base/text.h"

#include <algorithm>

namespace kestro {
namespace {

constexpr std::uint64_t largestKibibytes = std::uint64_t{1} << 50;

}  // namespace

std::optional<SwapUsage> parseSwaps(std::string_view text) {
    if (!takeLine(text).starts_with("Filename")) {
        return std::nullopt;
    }
    SwapUsage usage;
    while (!text.empty()) {
        // The kernel octal-escapes blanks in file names, so columns can be counted safely.
        auto line = takeLine(text);
        takeField(line);
        takeField(line);
        const auto size = parseTrimmed<std::uint64_t>(takeField(line));
        const auto used = parseTrimmed<std::uint64_t>(takeField(line));
        if (!size || !used || *size > largestKibibytes) {
            return std::nullopt;
        }
        usage.total += *size * 1024;
        usage.used += std::min(*used, *size) * 1024;
    }
    return usage;
}

}  // namespace kestro
