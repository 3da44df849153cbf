#include "platform/linux/network/interface_traffic.h"

#include "core/base/text.h"

namespace kestro {
namespace {

constexpr int columnsBetween = 7;

}  // namespace

void parseInterfaceTraffic(std::string_view text, std::vector<InterfaceTraffic>& traffic) {
    traffic.clear();
    while (!text.empty()) {
        auto line = takeLine(text);
        // The number may follow the colon without a blank; names contain no colon.
        const auto colon = line.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const auto name = trimmed(line.substr(0, colon));
        line.remove_prefix(colon + 1);
        const auto received = parseTrimmed<std::uint64_t>(takeField(line));
        for (int column = 0; column < columnsBetween; ++column) {
            takeField(line);
        }
        const auto sent = parseTrimmed<std::uint64_t>(takeField(line));
        if (!name.empty() && received && sent) {
            traffic.push_back({name, {*received, *sent}});
        }
    }
}

}  // namespace kestro
