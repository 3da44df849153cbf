#pragma once

// Only what platform/macos uses, with the types and layouts of xnu's osfmk/mach. Implemented by the fakes.

#include <cstddef>
#include <cstdint>

using integer_t = int;
using natural_t = unsigned int;
using kern_return_t = int;
using boolean_t = int;
using mach_port_t = natural_t;
using mach_port_name_t = natural_t;
using host_t = mach_port_t;
using task_port_t = mach_port_t;
using ipc_space_t = mach_port_t;
using vm_map_t = mach_port_t;
using vm_address_t = std::uintptr_t;
using vm_size_t = std::uintptr_t;
using processor_flavor_t = int;
using host_flavor_t = integer_t;
using mach_msg_type_number_t = natural_t;
using processor_info_array_t = integer_t*;
using host_info64_t = integer_t*;

#define KERN_SUCCESS 0
#define KERN_FAILURE 5

#define CPU_STATE_MAX 4
#define CPU_STATE_USER 0
#define CPU_STATE_SYSTEM 1
#define CPU_STATE_IDLE 2
#define CPU_STATE_NICE 3
#define PROCESSOR_CPU_LOAD_INFO 2

struct processor_cpu_load_info {
    unsigned int cpu_ticks[CPU_STATE_MAX];
};
using processor_cpu_load_info_data_t = processor_cpu_load_info;

struct host_cpu_load_info {
    natural_t cpu_ticks[CPU_STATE_MAX];
};
using host_cpu_load_info_data_t = host_cpu_load_info;

struct alignas(8) vm_statistics64 {
    natural_t free_count;
    natural_t active_count;
    natural_t inactive_count;
    natural_t wire_count;
    std::uint64_t zero_fill_count;
    std::uint64_t reactivations;
    std::uint64_t pageins;
    std::uint64_t pageouts;
    std::uint64_t faults;
    std::uint64_t cow_faults;
    std::uint64_t lookups;
    std::uint64_t hits;
    std::uint64_t purges;
    natural_t purgeable_count;
    natural_t speculative_count;
    std::uint64_t decompressions;
    std::uint64_t compressions;
    std::uint64_t swapins;
    std::uint64_t swapouts;
    natural_t compressor_page_count;
    natural_t throttled_count;
    natural_t external_page_count;
    natural_t internal_page_count;
    std::uint64_t total_uncompressed_pages_in_compressor;
};
using vm_statistics64_data_t = vm_statistics64;

#define HOST_VM_INFO64 4
#define HOST_VM_INFO64_COUNT ((mach_msg_type_number_t)(sizeof(vm_statistics64_data_t) / sizeof(integer_t)))

extern "C" {

extern mach_port_t mach_task_self_;
#define mach_task_self() mach_task_self_

mach_port_t mach_host_self();
kern_return_t mach_port_deallocate(ipc_space_t task, mach_port_name_t name);
kern_return_t host_processor_info(host_t host, processor_flavor_t flavor, natural_t* processorCount,
                                  processor_info_array_t* info, mach_msg_type_number_t* length);
kern_return_t host_statistics64(host_t host, host_flavor_t flavor, host_info64_t info,
                                mach_msg_type_number_t* length);
kern_return_t host_page_size(host_t host, vm_size_t* pageSize);
kern_return_t vm_deallocate(vm_map_t task, vm_address_t address, vm_size_t size);

}  // extern "C"
