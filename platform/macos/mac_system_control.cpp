#include "platform/macos/mac_system_control.h"

#include "platform/macos/kernel_values.h"

#include <sys/sysctl.h>
#include <sys/time.h>

#include <array>
#include <cstddef>

namespace kestro {

namespace {

static_assert(sizeof(xsw_usage) == 32);
static_assert(offsetof(xsw_usage, xsu_total) == 0 && offsetof(xsw_usage, xsu_used) == 16);
static_assert(CTL_KERN == 1 && KERN_BOOTTIME == 21);
static_assert(sizeof(timeval) == 16 && offsetof(timeval, tv_usec) == 8);

}  // namespace

std::optional<std::int32_t> MacSystemControl::sysctlByNameInt32(std::string_view name) {
    return kernelValue<std::int32_t>(std::string(name).c_str());
}

std::optional<std::string> MacSystemControl::sysctlByNameText(std::string_view name) {
    return kernelText(std::string(name).c_str());
}

std::optional<SwapUsage> MacSystemControl::swapUsage() {
    const auto usage = kernelValue<xsw_usage>("vm.swapusage");
    return usage ? std::optional(SwapUsage{usage->xsu_total, usage->xsu_used}) : std::nullopt;
}

std::optional<TimeValue> MacSystemControl::bootTime() {
    std::array<int, 2> name{CTL_KERN, KERN_BOOTTIME};
    timeval time{};
    std::size_t size = sizeof time;
    if (sysctl(name.data(), name.size(), &time, &size, nullptr, 0) != 0 || size != sizeof time) {
        return std::nullopt;
    }
    return TimeValue{time.tv_sec, time.tv_usec};
}

}  // namespace kestro
