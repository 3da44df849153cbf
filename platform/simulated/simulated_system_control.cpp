#include "platform/simulated/simulated_system_control.h"

namespace kestro {

std::optional<std::int32_t> SimulatedSystemControl::sysctlByNameInt32(std::string_view name) {
    const auto found = integers.find(name);
    return found == integers.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> SimulatedSystemControl::sysctlByNameText(std::string_view name) {
    const auto found = texts.find(name);
    return found == texts.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace kestro
