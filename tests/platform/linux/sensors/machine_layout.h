#pragma once

#include "tests/platform/linux/support.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestro::test {

/// A machine of machine_layouts.txt, which explains the format.
struct MachineLayout {
    struct Fan {
        std::string speed;
        std::vector<std::pair<std::string, std::string>> limits;  ///< attribute and value: {"max", "3300"}
        std::string label;
    };

    struct Temperature {
        double celsius = 0;
        std::string label;
    };

    struct Chip {
        std::string name;
        bool registersTheOldWay = false;
        std::vector<Temperature> temperatures;
        std::vector<Fan> fans;
    };

    struct Zone {
        std::string type;
        double celsius = 0;
        bool hasChip = false;
    };

    struct Battery {
        std::string name;
        std::optional<double> celsius;
    };

    struct Die {
        double average = 0;
        std::size_t count = 0;
        std::string first;  ///< name of the first of its sensors
    };

    struct Speed {
        double current = 0;
        double target = 0;
    };

    std::string name;
    std::string source;
    std::vector<Chip> chips;
    std::vector<Zone> zones;
    std::vector<Battery> batteries;
    std::string cores;
    std::optional<Die> die;
    std::optional<double> peak;
    std::vector<Speed> fans;
    std::string clusters;

    /// Writes the machine as the kernel would show it.
    void writeTo(TemporaryTree& tree) const;
};

/// Every machine of the file. Malformed lines fail the running test.
std::vector<MachineLayout> readMachineLayouts(const std::string& path);

}  // namespace kestro::test
