#include "platform/linux/interface_facts.h"

#include "platform/linux/kernel_files.h"
#include "platform/linux/text_parsing.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestro {
namespace {

/// Types of link (include/uapi/linux/if_arp.h) that carry packets through something else: point-to-point,
/// IP in IP, SIT, GRE, and none at all, which tun and WireGuard have.
constexpr std::array<std::uint32_t, 8> tunnelTypes{512, 768, 769, 776, 778, 783, 823, 65534};
constexpr std::array<std::string_view, 5> tunnelDeviceTypes{"wireguard", "vxlan", "geneve", "ppp", "gtp"};

std::string_view deviceType(std::string_view uevent) {
    constexpr std::string_view key = "DEVTYPE=";
    while (!uevent.empty()) {
        const auto line = takeLine(uevent);
        if (line.starts_with(key)) {
            return trimmed(line.substr(key.size()));
        }
    }
    return {};
}

bool contains(const auto& table, const auto& value) {
    return std::ranges::find(table, value) != table.end();
}

/// Groups of interfaces without hardware, the one that is closest to the outside first.
enum class Group { plain, bridge, tunnel };

Group groupOf(const InterfaceFacts& facts) {
    if (facts.isBridge) {
        return Group::bridge;
    }
    return facts.isTunnel ? Group::tunnel : Group::plain;
}

}  // namespace

InterfaceFacts readInterfaceFacts(const std::string& root, const std::string& name) {
    constexpr std::string_view lowerPrefix = "lower_";
    InterfaceFacts facts;
    facts.name = name;
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) {
        return facts;
    }
    const auto directory = pathUnder(root, "/sys/class/net/") + name;
    for (const auto& entry : listDirectory(directory)) {
        facts.isHardware = facts.isHardware || entry == "device";
        facts.isBridge = facts.isBridge || entry == "bridge";
        facts.isBridgePort = facts.isBridgePort || entry == "brport";
        facts.isTunnel = facts.isTunnel || entry == "tun_flags";
        if (entry.starts_with(lowerPrefix)) {
            facts.lowerNames.push_back(entry.substr(lowerPrefix.size()));
        }
    }
    const auto type = readFile(directory + "/type", 4096);
    const auto uevent = readFile(directory + "/uevent", 4096);
    facts.isTunnel = facts.isTunnel ||
                     (type && contains(tunnelTypes, parseInteger<std::uint32_t>(*type).value_or(0))) ||
                     (uevent && contains(tunnelDeviceTypes, deviceType(*uevent)));
    return facts;
}

std::vector<bool> repeatsTraffic(const std::vector<InterfaceFacts>& interfaces) {
    const auto isHardwareName = [&interfaces](const std::string& name) {
        const auto found = std::ranges::find(interfaces, name, &InterfaceFacts::name);
        return found != interfaces.end() && found->isHardware;
    };
    // Ports of a switch chip and paravirtual cards have a device and yet ride on the card that moves the data.
    const auto hasOwn = [&](const InterfaceFacts& facts) {
        return facts.isLoopback || (facts.isHardware && std::ranges::none_of(facts.lowerNames, isHardwareName));
    };
    const auto isCarried = [&](const InterfaceFacts& facts) {
        return facts.isBridgePort || (facts.isBridge ? std::ranges::any_of(facts.lowerNames, isHardwareName)
                                                     : !facts.lowerNames.empty());
    };
    bool isHardwareUp = false;
    std::optional<Group> outermost;
    for (const auto& facts : interfaces) {
        if (!facts.isUp || facts.isLoopback) {
            continue;
        }
        isHardwareUp = isHardwareUp || facts.isHardware;
        if (!facts.isHardware && !isCarried(facts)) {
            outermost = std::min(outermost.value_or(Group::tunnel), groupOf(facts));
        }
    }
    std::vector<bool> repeats;
    for (const auto& facts : interfaces) {
        const bool isInner = outermost && groupOf(facts) != *outermost;
        repeats.push_back(!hasOwn(facts) && (isCarried(facts) || isHardwareUp || isInner));
    }
    return repeats;
}

}  // namespace kestro
