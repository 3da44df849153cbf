#include "platform/linux/process/process_stat.h"

#include "core/base/text.h"

namespace kestro {

namespace {

/// Skips `count` fields that end in a space; false when the text ends first.
bool skipFields(std::string_view& text, int count) {
    for (; count > 0; --count) {
        const auto space = text.find(' ');
        if (space == std::string_view::npos) {
            return false;
        }
        text.remove_prefix(space + 1);
    }
    return true;
}

}  // namespace

std::optional<ProcessStat> parseProcessStat(std::string_view text) {
    const auto nameStart = text.find('(');
    const auto nameEnd = text.rfind(')');
    if (nameStart == std::string_view::npos || nameEnd == std::string_view::npos || nameEnd < nameStart ||
        nameEnd - nameStart > 65) {
        return std::nullopt;
    }

    ProcessStat stat;
    auto head = text.substr(0, nameStart);
    if (!takeNumber(head, stat.pid) || head != " " || stat.pid <= 0) {
        return std::nullopt;
    }
    stat.name = text.substr(nameStart + 1, nameEnd - nameStart - 1);

    // Fields are numbered from 1 (pid) and 2 (name); the rest begins with the blank before field 3.
    auto rest = text.substr(nameEnd + 1);
    std::uint64_t userTicks = 0;
    std::uint64_t systemTicks = 0;
    std::int64_t residentPages = 0;
    if (!skipFields(rest, 12) || !takeNumber(rest, userTicks) ||                            // 14
        !skipFields(rest, 1) || !takeNumber(rest, systemTicks) ||                           // 15
        !skipFields(rest, 7) || !takeNumber(rest, stat.startTicks) ||                       // 22
        !skipFields(rest, 2) || !takeNumber(rest, residentPages) || !rest.starts_with(' ')  // 24
    ) {
        return std::nullopt;
    }
    stat.processorTicks = userTicks + systemTicks;
    stat.residentPages = residentPages > 0 ? static_cast<std::uint64_t>(residentPages) : 0;
    return stat;
}

}  // namespace kestro
