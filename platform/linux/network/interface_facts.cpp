#include "platform/linux/network/interface_facts.h"

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/network/serial_link.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestro {
namespace {

/// Link types (include/uapi/linux/if_arp.h) that tunnel packets through another interface: point-to-point, IP in
/// IP, SIT, GRE, and "none", which tun and WireGuard use.
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

/// Groups of interfaces without hardware, from the outermost inwards.
enum class Group { plain, bridge, tunnel };

Group groupOf(const InterfaceFacts& facts) {
    if (facts.isBridge) {
        return Group::bridge;
    }
    return facts.isTunnel ? Group::tunnel : Group::plain;
}

using Interfaces = std::vector<InterfaceFacts>;

/// Whether hardware is directly below; looks through up to `deepest` more layers, but not through tunnels.
bool ridesOnHardware(const Interfaces& interfaces, const InterfaceFacts& upper, int deepest) {
    return std::ranges::any_of(upper.lowerNames, [&](const std::string& name) {
        const auto lower = std::ranges::find(interfaces, name, &InterfaceFacts::name);
        return lower != interfaces.end() &&
               (lower->isHardware ||
                (deepest > 0 && !lower->isTunnel && ridesOnHardware(interfaces, *lower, deepest - 1)));
    });
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
    const auto kind = uevent ? deviceType(*uevent) : std::string_view();
    if (kind == "ppp" && isSerialLink(root, name)) {
        facts.isHardware = true;
        return facts;
    }
    // A modem's channels have no link type either, but have its card below them.
    const bool ridesOnNothing = facts.lowerNames.empty();
    facts.isTunnel =
        facts.isTunnel ||
        (ridesOnNothing && type && contains(tunnelTypes, parseTrimmed<std::uint32_t>(*type).value_or(0))) ||
        contains(tunnelDeviceTypes, kind);
    return facts;
}

std::vector<InterfaceStanding> standings(const Interfaces& interfaces) {
    // A VLAN on a bridge on a bond is about as deep as real setups go.
    constexpr int deepest = 4;
    // Ports of a switch chip and paravirtual cards have a device, but the card below them moves the data.
    const auto hasOwn = [&](const InterfaceFacts& facts) {
        return facts.isLoopback || (facts.isHardware && !ridesOnHardware(interfaces, facts, 0));
    };
    const auto isCarried = [&](const InterfaceFacts& facts) {
        return facts.isBridgePort ||
               (facts.isBridge ? ridesOnHardware(interfaces, facts, deepest) : !facts.lowerNames.empty());
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
    std::vector<InterfaceStanding> result;
    for (const auto& facts : interfaces) {
        const bool isBehindAnother = outermost && groupOf(facts) != *outermost;
        if (hasOwn(facts) || !(isCarried(facts) || isHardwareUp || isBehindAnother)) {
            result.push_back(InterfaceStanding::counted);
        } else {
            const bool leadsOut =
                !facts.isTunnel && !facts.isBridgePort && ridesOnHardware(interfaces, facts, deepest);
            result.push_back(leadsOut ? InterfaceStanding::carried : InterfaceStanding::inner);
        }
    }
    return result;
}

}  // namespace kestro
