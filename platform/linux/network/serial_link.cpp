#include "platform/linux/network/serial_link.h"

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

namespace kestro {
namespace {

/// The arguments of the link's daemon, each ended by a zero byte; empty if there is none.
std::string daemonArguments(const std::string& root, const std::string& name) {
    // The second folder is that of pppd 2.5.
    for (const auto* const folder : {"/run/", "/run/pppd/"}) {
        const auto text = readFile(pathUnder(root, folder) + name + ".pid", 4096);
        const auto pid = text ? parseTrimmed<std::int32_t>(*text) : std::nullopt;
        if (pid && *pid > 0) {
            return readFile(pathUnder(root, "/proc/") + std::to_string(*pid) + "/cmdline").value_or("");
        }
    }
    return {};
}

/// Removes the first argument from `rest` and returns it.
std::string_view takeArgument(std::string_view& rest) {
    const auto argument = rest.substr(0, rest.find('\0'));
    rest.remove_prefix(std::min(argument.size() + 1, rest.size()));
    return argument;
}

/// Whether an argument names a terminal that has a device; pseudo-terminals have none. The daemon prepends "/dev/"
/// if necessary.
bool isSerialTerminal(const std::string& root, std::string_view argument) {
    constexpr std::string_view folder = "/dev/";
    if (argument.starts_with(folder)) {
        argument.remove_prefix(folder.size());
    }
    if (argument.empty() || argument.starts_with('/') || argument.ends_with('.')) {
        return false;
    }
    std::error_code error;
    const std::filesystem::path path(pathUnder(root, folder).append(argument));
    const auto target = std::filesystem::canonical(path, error);
    const auto terminal = (error ? path : target).filename().string();
    return isDirectory(pathUnder(root, "/sys/class/tty/") + terminal + "/device");
}

}  // namespace

bool isSerialLink(const std::string& root, const std::string& name) {
    const auto arguments = daemonArguments(root, name);
    std::string_view rest = arguments;
    // The file of a daemon that was killed may hold the number of another program.
    if (!takeArgument(rest).ends_with("pppd")) {
        return false;
    }
    while (!rest.empty()) {
        if (isSerialTerminal(root, takeArgument(rest))) {
            return true;
        }
    }
    return false;
}

}  // namespace kestro
