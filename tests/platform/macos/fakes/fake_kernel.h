#pragma once

#include <mach/mach.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace kestro::fakes {

/// One entry of the list of interfaces.
struct FakeInterface {
    std::string name;
    unsigned int flags = 0;
    int family = 0;  ///< 0: no address
    std::array<std::uint8_t, 4> ipv4{};
    std::uint8_t type = 0;  ///< of a link
    std::uint32_t receivedBytes = 0;
    std::uint32_t sentBytes = 0;
    bool hasStatistics = true;
};

/// mach, BSD and notify(3): their answers, and what the program holds of them.
class FakeKernel {
public:
    FakeKernel();
    ~FakeKernel();
    FakeKernel(const FakeKernel&) = delete;
    FakeKernel& operator=(const FakeKernel&) = delete;

    std::vector<std::array<std::uint32_t, CPU_STATE_MAX>> ticks;  ///< of each core: user, system, idle, nice
    bool answersWithoutArray = false;
    vm_statistics64_data_t statistics{};
    mach_msg_type_number_t statisticsLength = HOST_VM_INFO64_COUNT;  ///< an older kernel's are shorter
    vm_size_t pageSize = 16384;

    /// Values by name: integers of 4 and 8 bytes, text, raw bytes.
    std::map<std::string, std::variant<std::int32_t, std::uint64_t, std::string, std::vector<std::uint8_t>>>
        values;
    std::optional<std::pair<std::int64_t, std::int32_t>> bootTime;

    std::map<std::string, std::array<std::uint64_t, 3>> volumes;  ///< fragment size, blocks, available blocks
    std::map<std::string, std::array<std::string, 3>> mounts;     ///< point, device, type
    int interruptedCalls = 0;                                     ///< of the next ones
    std::vector<FakeInterface> interfaces;
    std::uint64_t thermalPressure = 0;

    /// Nanoseconds since boot, awake and asleep.
    std::uint64_t uptime = 3'600'000'000'000;
    std::uint64_t asleep = 0;

    std::map<mach_port_t, std::int64_t> sendRights;
    std::map<std::uintptr_t, std::unique_ptr<integer_t[]>> arrays;
    std::map<std::uintptr_t, std::size_t> arraySizes;  ///< in bytes
    std::set<const void*> interfaceLists;
    std::set<int> notifyTokens;
    std::vector<std::string> misuse;

    void appendHeld(std::vector<std::string>& all) const;
};

}  // namespace kestro::fakes
