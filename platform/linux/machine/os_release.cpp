#include "platform/linux/machine/os_release.h"

#include "core/base/text.h"

namespace kestro {
namespace {

/// The value of an assignment with shell quoting removed, without expansions.
std::string unquoted(std::string_view value) {
    value = trimmed(value);
    const char quote = !value.empty() && (value.front() == '"' || value.front() == '\'') ? value.front() : '\0';
    if (quote != '\0') {
        value.remove_prefix(1);
    }
    std::string result;
    for (std::size_t position = 0; position < value.size(); ++position) {
        if (quote != '\0' && value[position] == quote) {
            break;
        }
        const bool isEscape = quote != '\'' && value[position] == '\\' && position + 1 < value.size();
        result += value[isEscape ? ++position : position];
    }
    return result;
}

}  // namespace

std::optional<VersionNumbers> parseVersionNumbers(std::string_view text) {
    text = trimmed(text);
    VersionNumbers version{};
    std::size_t count = 0;
    while (count < version.size()) {
        if (!takeNumber(text, version[count]) || version[count] < 0) {
            version[count] = 0;
            break;
        }
        ++count;
        if (!text.starts_with('.')) {
            break;
        }
        text.remove_prefix(1);
    }
    return count > 0 ? std::optional(version) : std::nullopt;
}

OsRelease parseOsRelease(std::string_view text) {
    OsRelease release;
    while (!text.empty()) {
        const auto line = trimmed(takeLine(text));
        const auto equals = line.find('=');
        if (equals == std::string_view::npos) {
            continue;
        }
        const auto key = line.substr(0, equals);
        if (key == "NAME") {
            release.name = displayText(unquoted(line.substr(equals + 1)));
        } else if (key == "VERSION_ID") {
            release.version = parseVersionNumbers(unquoted(line.substr(equals + 1)));
        }
    }
    return release;
}

}  // namespace kestro
