#include "platform/linux/machine/mount_table.h"

#include "core/base/text.h"

#include <algorithm>
#include <array>
#include <optional>

namespace kestro {
namespace {

/// The kernel writes blanks, line breaks and backslashes as three octal digits.
std::string unescaped(std::string_view text) {
    constexpr std::size_t escapeLength = 4;
    const auto isOctal = [](char digit) { return digit >= '0' && digit <= '7'; };
    std::string result;
    while (!text.empty()) {
        const auto plain = text.substr(0, text.find('\\'));
        result += plain;
        text.remove_prefix(plain.size());
        if (text.size() >= escapeLength && std::ranges::all_of(text.substr(1, 3), isOctal)) {
            result += static_cast<char>((text[1] - '0') * 64 + (text[2] - '0') * 8 + (text[3] - '0'));
            text.remove_prefix(escapeLength);
        } else if (!text.empty()) {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

bool hasOption(std::string_view options, std::string_view wanted) {
    while (!options.empty()) {
        const auto comma = options.find(',');
        if (options.substr(0, comma) == wanted) {
            return true;
        }
        options.remove_prefix(comma == std::string_view::npos ? options.size() : comma + 1);
    }
    return false;
}

std::optional<Mount> parseLine(std::string_view line) {
    std::array<std::string_view, 6> fields;  // number, parent, device, root, mount point, options
    for (auto& field : fields) {
        field = takeField(line);
    }
    // Any number of optional fields, then a separator.
    auto field = takeField(line);
    while (!field.empty() && field != "-") {
        field = takeField(line);
    }
    Mount mount;
    mount.device = fields[2];
    mount.point = unescaped(fields[4]);
    mount.type = takeField(line);
    mount.source = unescaped(takeField(line));
    const auto options = takeField(line);
    mount.isReadOnly = hasOption(fields[5], "ro") || hasOption(options, "ro");
    mount.hasUpperLayer = options.starts_with("upperdir=") || options.find(",upperdir=") != std::string_view::npos;
    const bool isComplete = field == "-" && mount.point.starts_with('/') && !mount.type.empty();
    return isComplete ? std::optional(std::move(mount)) : std::nullopt;
}

bool contains(std::string_view point, std::string_view path) {
    return point == "/" || (path.starts_with(point) && (path.size() == point.size() || path[point.size()] == '/'));
}

}  // namespace

std::vector<Mount> parseMountInfo(std::string_view text) {
    std::vector<Mount> mounts;
    while (!text.empty()) {
        if (auto mount = parseLine(takeLine(text))) {
            mounts.push_back(std::move(*mount));
        }
    }
    return mounts;
}

const Mount* mountAt(const std::vector<Mount>& mounts, std::string_view point) {
    const auto found =
        std::find_if(mounts.rbegin(), mounts.rend(), [point](const Mount& mount) { return mount.point == point; });
    return found != mounts.rend() ? &*found : nullptr;
}

const Mount* mountOf(const std::vector<Mount>& mounts, std::string_view path) {
    const Mount* closest = nullptr;
    for (const auto& mount : mounts) {
        if (contains(mount.point, path) && (closest == nullptr || mount.point.size() >= closest->point.size())) {
            closest = &mount;
        }
    }
    return closest;
}

}  // namespace kestro
