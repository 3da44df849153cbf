#include "tests/drills/drill.h"

#include "tests/drills/drills.h"

#include <fmt/format.h>

#include <array>
#include <cstdio>
#include <exception>

namespace kestro::drills {

namespace {

constexpr std::size_t mostFailuresShown = 20;

constexpr std::array drills{
    Drill{"faults", faultsDrill, 24, 6},      Drill{"kill", killDrill, 1000, 6},
    Drill{"bus", busDrill, 3000, 100},        Drill{"files", filesDrill, 2000, 30},
    Drill{"sessions", sessionsDrill, 200, 2}, Drill{"soak", soakDrill, 3600, 36},
};

}  // namespace

std::span<const Drill> allDrills() {
    return drills;
}

bool runDrill(const Drill& drill, const DrillLength& length, std::uint32_t seed) {
    DrillRandom random(seed);
    DrillReport report;
    try {
        report = drill.run(length, random);
    } catch (const std::exception& error) {
        report.failures.emplace_back(error.what());
    }
    const bool hasPassed = report.failures.empty();
    fmt::print("{}: {}; worst: {}; seed {}; {}\n", drill.name, report.done.empty() ? "broken off" : report.done,
               report.worst.empty() ? "unknown" : report.worst, seed, hasPassed ? "passed" : "failed");
    for (std::size_t index = 0; index < report.failures.size() && index < mostFailuresShown; ++index) {
        fmt::print("  {}\n", report.failures[index]);
    }
    if (report.failures.size() > mostFailuresShown) {
        fmt::print("  and {} more\n", report.failures.size() - mostFailuresShown);
    }
    std::fflush(stdout);
    return hasPassed;
}

}  // namespace kestro::drills
