#include "tests/platform/macos/fakes/fake_mac.h"

#include <libkern/OSThermalNotification.h>
#include <notify.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <sys/sysctl.h>
#include <sys/time.h>
#include <time.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace kestro::fakes {

namespace {

constexpr mach_port_t hostPort = 0x1103;
constexpr mach_port_t taskPort = 0x203;

FakeKernel& kernel() {
    return FakeMac::current().kernel;
}

bool fails(const char* function) {
    return FakeMac::current().fails(function);
}

void blame(std::string text) {
    kernel().misuse.push_back(std::move(text));
}

/// sysctl(3)'s rules for the caller's buffer.
int answer(const void* value, std::size_t length, void* buffer, std::size_t* size) {
    if (buffer == nullptr) {
        *size = length;
        return 0;
    }
    const bool fits = length <= *size;
    *size = std::min(length, *size);
    // An empty value may have no address.
    if (*size > 0) {
        std::memcpy(buffer, value, *size);
    }
    errno = fits ? 0 : ENOMEM;
    return fits ? 0 : -1;
}

}  // namespace

void FakeKernel::appendHeld(std::vector<std::string>& all) const {
    const auto append = [&all](std::size_t count, const char* what) {
        if (count > 0) {
            all.push_back(std::to_string(count) + " " + what);
        }
    };
    append(sendRights.size(), "send rights");
    append(arrays.size(), "arrays of the kernel");
    append(interfaceLists.size(), "interface lists");
    append(notifyTokens.size(), "notify tokens");
}

}  // namespace kestro::fakes

using namespace kestro::fakes;

extern "C" {

mach_port_t mach_task_self_ = taskPort;
const char* const kOSThermalNotificationPressureLevelName = "com.apple.system.thermalpressurelevel";

mach_port_t mach_host_self() {
    if (fails("mach_host_self")) {
        return 0;
    }
    ++kernel().sendRights[hostPort];
    return hostPort;
}

kern_return_t mach_port_deallocate(ipc_space_t task, mach_port_name_t name) {
    auto& rights = kernel().sendRights;
    const auto found = rights.find(name);
    if (task != taskPort || found == rights.end()) {
        blame("mach_port_deallocate of a port that is not held");
        return KERN_FAILURE;
    }
    if (--found->second == 0) {
        rights.erase(found);
    }
    return KERN_SUCCESS;
}

kern_return_t host_processor_info(host_t host, processor_flavor_t flavor, natural_t* processorCount,
                                  processor_info_array_t* info, mach_msg_type_number_t* length) {
    if (fails("host_processor_info") || host != hostPort || flavor != PROCESSOR_CPU_LOAD_INFO) {
        return KERN_FAILURE;
    }
    FakeKernel& state = kernel();
    *processorCount = static_cast<natural_t>(state.ticks.size());
    *length = *processorCount * CPU_STATE_MAX;
    if (state.answersWithoutArray) {
        *info = nullptr;
        return KERN_SUCCESS;
    }
    // Exactly as long as it says, for the address sanitizer.
    auto array = std::make_unique<integer_t[]>(*length);
    std::memcpy(array.get(), state.ticks.data(), *length * sizeof(integer_t));
    *info = array.get();
    const auto address = reinterpret_cast<std::uintptr_t>(array.get());
    state.arraySizes[address] = *length * sizeof(integer_t);
    state.arrays[address] = std::move(array);
    return KERN_SUCCESS;
}

kern_return_t vm_deallocate(vm_map_t task, vm_address_t address, vm_size_t size) {
    FakeKernel& state = kernel();
    const auto found = state.arraySizes.find(address);
    if (task != taskPort || found == state.arraySizes.end() || found->second != size) {
        blame("vm_deallocate of memory that is not held, or of another size");
        return KERN_FAILURE;
    }
    state.arraySizes.erase(found);
    state.arrays.erase(address);
    return KERN_SUCCESS;
}

kern_return_t host_statistics64(host_t host, host_flavor_t flavor, host_info64_t info,
                                mach_msg_type_number_t* length) {
    if (fails("host_statistics64") || host != hostPort || flavor != HOST_VM_INFO64) {
        return KERN_FAILURE;
    }
    *length = std::min(*length, kernel().statisticsLength);
    std::memcpy(info, &kernel().statistics, *length * sizeof(integer_t));
    return KERN_SUCCESS;
}

kern_return_t host_page_size(host_t host, vm_size_t* pageSize) {
    if (fails("host_page_size") || host != hostPort) {
        return KERN_FAILURE;
    }
    *pageSize = kernel().pageSize;
    return KERN_SUCCESS;
}

int sysctlbyname(const char* name, void* oldValue, std::size_t* oldSize, void* newValue, std::size_t newSize) {
    const auto& values = kernel().values;
    const auto found = values.find(name);
    if (fails("sysctlbyname") || found == values.end() || newValue != nullptr || newSize != 0) {
        errno = ENOENT;
        return -1;
    }
    return std::visit(
        [&](const auto& value) {
            if constexpr (requires { value.c_str(); }) {
                return answer(value.c_str(), value.size() + 1, oldValue, oldSize);
            } else if constexpr (requires { value.data(); }) {
                return answer(value.data(), value.size(), oldValue, oldSize);
            } else {
                return answer(&value, sizeof value, oldValue, oldSize);
            }
        },
        found->second);
}

int sysctl(int* name, unsigned int length, void* oldValue, std::size_t* oldSize, void*, std::size_t) {
    const auto& bootTime = kernel().bootTime;
    if (fails("sysctl") || length != 2 || name[0] != CTL_KERN || name[1] != KERN_BOOTTIME || !bootTime) {
        errno = ENOENT;
        return -1;
    }
    const timeval time{bootTime->first, bootTime->second};
    return answer(&time, sizeof time, oldValue, oldSize);
}

unsigned long long clock_gettime_nsec_np(clockid_t clock) {
    return kernel().uptime + (clock == CLOCK_MONOTONIC_RAW ? kernel().asleep : 0);
}

std::uint32_t notify_register_check(const char* name, int* token) {
    static int last = 0;
    if (fails("notify_register_check") || std::strcmp(name, kOSThermalNotificationPressureLevelName) != 0) {
        return 1;
    }
    *token = ++last;
    kernel().notifyTokens.insert(*token);
    return NOTIFY_STATUS_OK;
}

std::uint32_t notify_get_state(int token, std::uint64_t* state) {
    if (fails("notify_get_state") || !kernel().notifyTokens.contains(token)) {
        return 1;
    }
    *state = kernel().thermalPressure;
    return NOTIFY_STATUS_OK;
}

std::uint32_t notify_cancel(int token) {
    if (kernel().notifyTokens.erase(token) == 0) {
        blame("notify_cancel of a token that is not held");
    }
    return NOTIFY_STATUS_OK;
}

int statvfs(const char* path, struct statvfs* status) {
    FakeKernel& state = kernel();
    const auto found = state.volumes.find(path);
    if (state.interruptedCalls > 0) {
        --state.interruptedCalls;
        errno = EINTR;
        return -1;
    }
    if (fails("statvfs") || found == state.volumes.end()) {
        errno = ENOENT;
        return -1;
    }
    const auto& [fragment, blocks, available] = found->second;
    status->f_frsize = fragment;
    status->f_blocks = static_cast<fsblkcnt_t>(blocks);
    status->f_bavail = static_cast<fsblkcnt_t>(available);
    return 0;
}

int statfs(const char* path, struct statfs* status) {
    const auto found = kernel().mounts.find(path);
    if (fails("statfs") || found == kernel().mounts.end()) {
        errno = ENOENT;
        return -1;
    }
    const auto& [point, device, type] = found->second;
    std::snprintf(status->f_mntonname, sizeof status->f_mntonname, "%s", point.c_str());
    std::snprintf(status->f_mntfromname, sizeof status->f_mntfromname, "%s", device.c_str());
    std::snprintf(status->f_fstypename, sizeof status->f_fstypename, "%s", type.c_str());
    return 0;
}

}  // extern "C"
