#pragma once

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/network/interface_source.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <linux/if_link.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <charconv>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestro::test {

/// Replays the interface list from a machine's file "getifaddrs", one entry per line: the name, the flags in
/// hexadecimal, and "link", "ipv4" with the address, "other", or "null" for a link-level entry without an address.
class RecordedInterfaces final : public InterfaceSource {
public:
    explicit RecordedInterfaces(const std::string& root) : path_(root + "/getifaddrs") {}

    std::optional<std::vector<InterfaceEntry>> list() override {
        ++lists;
        const auto text = readFile(path_);
        if (!text) {
            return std::nullopt;
        }
        std::vector<InterfaceEntry> entries;
        std::string_view rest = *text;
        while (!rest.empty()) {
            auto line = takeLine(rest);
            entries.push_back(recorded(line));
        }
        return entries;
    }

    bool hasChanged() override { return std::exchange(changed, false); }

    bool changed = true;
    int lists = 0;

private:
    /// As the kernel's source converts it.
    static InterfaceEntry recorded(std::string_view line) {
        std::string name(takeField(line));
        sockaddr_storage address{};
        rtnl_link_stats data{};
        ifaddrs entry{};
        entry.ifa_name = name.data();
        const auto flags = takeField(line).substr(2);
        std::from_chars(flags.data(), flags.data() + flags.size(), entry.ifa_flags, 16);
        const auto family = takeField(line);
        address.ss_family = family == "link" ? AF_PACKET : (family == "ipv4" ? AF_INET : AF_INET6);
        if (family == "ipv4") {
            auto& internet = reinterpret_cast<sockaddr_in&>(address);
            inet_pton(AF_INET, std::string(trimmed(line)).c_str(), &internet.sin_addr);
        }
        entry.ifa_addr = family == "null" ? nullptr : reinterpret_cast<sockaddr*>(&address);
        entry.ifa_data = family == "null" || family == "link" ? &data : nullptr;
        return interfaceEntry(entry);
    }

    std::string path_;
};

}  // namespace kestro::test
