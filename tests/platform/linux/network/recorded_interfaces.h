#pragma once

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"
#include "platform/linux/network/interface_source.h"

#include <charconv>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestro::test {

/// Replays the interface list from a machine's file "getifaddrs", one entry per line: the name, the flags in
/// hexadecimal, and "link", "ipv4" with the address, or "other".
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
            InterfaceEntry entry;
            entry.name = takeField(line);
            const auto flags = takeField(line).substr(2);
            std::from_chars(flags.data(), flags.data() + flags.size(), entry.flags, 16);
            const auto family = takeField(line);
            InterfaceAddress address;
            if (family == "link") {
                address.family = AddressFamily::link;
            } else if (family == "ipv4") {
                address.family = AddressFamily::ipv4;
                for (auto& byte : address.ipv4) {
                    const auto dot = line.find('.');
                    byte = parseTrimmed<std::uint8_t>(line.substr(0, dot)).value_or(0);
                    line.remove_prefix(dot == std::string_view::npos ? line.size() : dot + 1);
                }
            }
            entry.address = address;
            entries.push_back(std::move(entry));
        }
        return entries;
    }

    bool hasChanged() override { return std::exchange(changed, false); }

    bool changed = true;
    int lists = 0;

private:
    std::string path_;
};

}  // namespace kestro::test
