#pragma once

#include "core/platform/system_control.h"

namespace kestro {

/// sysctl(3). Main thread.
class MacSystemControl final : public SystemControl {
public:
    std::optional<std::int32_t> sysctlByNameInt32(std::string_view name) override;
    std::optional<std::string> sysctlByNameText(std::string_view name) override;
    std::optional<SwapUsage> swapUsage() override;
    std::optional<TimeValue> bootTime() override;
};

}  // namespace kestro
