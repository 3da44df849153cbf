#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace kestro::bench {

/// CPU time of this thread in nanoseconds, including kernel time.
inline double threadNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

inline double median(std::vector<double> values) {
    if (values.empty()) {
        return 0;
    }
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// Medians of a figure, its floor and their pairwise ratio: machines drift, pairs do not.
struct Pair {
    double figure = 0;
    double floor = 0;
    double ratio = 0;
};

using Work = std::function<void()>;

inline double cost(const Work& work) {
    const double start = threadNanoseconds();
    work();
    return threadNanoseconds() - start;
}

/// Measures figure and floor alternately, `rounds` times, each after a pause. Without a pause, caches are hot. A
/// pause as long as a monitor's period makes them cold, which is the real cost of a monitor.
inline Pair measure(const Work& figure, const Work& floor, int rounds, std::chrono::milliseconds pause = {}) {
    std::vector<double> figures;
    std::vector<double> floors;
    std::vector<double> ratios;
    figure();
    floor();
    const auto sample = [pause](const Work& work) {
        if (pause.count() > 0) {
            std::this_thread::sleep_for(pause);
        }
        return cost(work);
    };
    for (int round = 0; round < rounds; ++round) {
        // Whichever runs second finds warm caches: alternate the order.
        const bool figureFirst = round % 2 == 0;
        const double first = sample(figureFirst ? figure : floor);
        const double second = sample(figureFirst ? floor : figure);
        figures.push_back(figureFirst ? first : second);
        floors.push_back(figureFirst ? second : first);
        ratios.push_back(floors.back() > 0 ? figures.back() / floors.back() : 0);
    }
    return {median(figures), median(floors), median(ratios)};
}

inline void printRow(const std::string& name, const std::string& figure, const std::string& floor,
                     const std::string& ratio, const std::string& budget) {
    fmt::print("{:<46} {:>12} {:>12} {:>7} {:>12}\n", name, figure, floor, ratio, budget);
    std::fflush(stdout);
}

inline void printHeader(const std::string& title) {
    fmt::print("\n");
    printRow(title, "figure", "floor", "ratio", "budget");
}

inline void printPair(const std::string& name, const Pair& pair, const std::string& budget) {
    printRow(name, fmt::format("{:.1f} us", pair.figure / 1000), fmt::format("{:.1f} us", pair.floor / 1000),
             fmt::format("{:.2f}", pair.ratio), budget);
}

}  // namespace kestro::bench
