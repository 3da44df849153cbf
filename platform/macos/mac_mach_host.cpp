#include "platform/macos/mac_mach_host.h"

#include <mach/mach.h>

#include <cstddef>
#include <type_traits>

namespace kestro {

namespace {

// An array of four ticks per core, in this order.
static_assert(std::is_same_v<integer_t, std::int32_t>);
static_assert(PROCESSOR_CPU_LOAD_INFO == 2);
static_assert(CPU_STATE_MAX == 4 && sizeof(host_cpu_load_info_data_t) == 16);
static_assert(sizeof(processor_cpu_load_info_data_t) == CPU_STATE_MAX * sizeof(integer_t));
static_assert(CPU_STATE_USER == 0 && CPU_STATE_SYSTEM == 1 && CPU_STATE_IDLE == 2 && CPU_STATE_NICE == 3);

static_assert(HOST_VM_INFO64 == 4);
static_assert(offsetof(vm_statistics64_data_t, free_count) == 0);
static_assert(offsetof(vm_statistics64_data_t, active_count) == 4);
static_assert(offsetof(vm_statistics64_data_t, inactive_count) == 8);
static_assert(offsetof(vm_statistics64_data_t, wire_count) == 12);
static_assert(offsetof(vm_statistics64_data_t, compressor_page_count) == 128);
static_assert(HOST_VM_INFO64_COUNT * sizeof(integer_t) == sizeof(vm_statistics64_data_t));

/// The length of a result that contains every field in use, in integers. Older kernels return fewer.
constexpr mach_msg_type_number_t requiredStatistics =
    (offsetof(vm_statistics64_data_t, compressor_page_count) + sizeof(natural_t)) / sizeof(integer_t);

}  // namespace

MacMachHost::MacMachHost() : host_(mach_host_self()) {}

std::optional<ProcessorLoadInfo> MacMachHost::hostProcessorInfo() {
    natural_t processorCount = 0;
    processor_info_array_t info = nullptr;
    mach_msg_type_number_t length = 0;
    if (host_processor_info(host_.get(), PROCESSOR_CPU_LOAD_INFO, &processorCount, &info, &length) !=
        KERN_SUCCESS) {
        return std::nullopt;
    }
    return ProcessorLoadInfo{processorCount, {info, info == nullptr ? 0 : length}};
}

void MacMachHost::vmDeallocate(std::int32_t* address, std::size_t byteCount) {
    if (address != nullptr) {
        vm_deallocate(mach_task_self(), reinterpret_cast<vm_address_t>(address), byteCount);
    }
}

std::optional<VirtualMemoryStatistics> MacMachHost::hostStatistics64() {
    vm_statistics64_data_t statistics{};
    mach_msg_type_number_t length = HOST_VM_INFO64_COUNT;
    if (host_statistics64(host_.get(), HOST_VM_INFO64, reinterpret_cast<host_info64_t>(&statistics), &length) !=
            KERN_SUCCESS ||
        length < requiredStatistics) {
        return std::nullopt;
    }
    return VirtualMemoryStatistics{.freeCount = statistics.free_count,
                                   .activeCount = statistics.active_count,
                                   .inactiveCount = statistics.inactive_count,
                                   .wireCount = statistics.wire_count,
                                   .compressorPageCount = statistics.compressor_page_count};
}

std::optional<std::size_t> MacMachHost::hostPageSize() {
    vm_size_t bytes = 0;
    const bool isKnown = host_page_size(host_.get(), &bytes) == KERN_SUCCESS && bytes > 0;
    return isKnown ? std::optional<std::size_t>(bytes) : std::nullopt;
}

}  // namespace kestro
