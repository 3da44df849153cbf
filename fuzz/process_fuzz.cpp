#include "platform/linux/kernel/valid_text.h"
#include "platform/linux/process/process_stat.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto stat = kestro::parseProcessStat(text);
    if (stat && (stat->pid <= 0 || stat->name.size() > 64)) {
        std::abort();
    }
    // Valid text stays unchanged, plain letters above all.
    const auto valid = kestro::validText(text);
    const bool isPlain = std::ranges::all_of(text, [](char byte) { return byte >= ' ' && byte <= '~'; });
    if (kestro::validText(valid) != valid || (isPlain && valid != text)) {
        std::abort();
    }
    return 0;
}
