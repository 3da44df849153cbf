#pragma once

#include <cstdint>
#include <string>

namespace kestro {

/// One row of the list of top processes.
struct ProcessInfoItem {
    std::int32_t id = 0;           ///< the process identifier; its identity
    std::string name;              ///< short display name
    std::string fullCommand;       ///< the command as reported
    double cpuPercent = 0;         ///< percent of one core; may exceed 100
    double memoryMB = 0;           ///< resident memory in mebibytes
    std::string memoryString;      ///< resident memory for display: "512 MB" or "2.0 GB"
    bool isSystemProcess = false;  ///< the command is in a system location

    friend bool operator==(const ProcessInfoItem&, const ProcessInfoItem&) = default;
};

}  // namespace kestro
