#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestro::drills {

/// How long a drill runs: a number of rounds, or a time. What a round is depends on the drill.
class DrillLength {
public:
    explicit DrillLength(int rounds) : rounds_(rounds) {}
    explicit DrillLength(std::chrono::seconds time) : time_(time) {}

    /// Whether another round follows `finished` ones.
    bool allowsAfter(int finished) const {
        return time_ ? std::chrono::steady_clock::now() < start_ + *time_ : finished < rounds_;
    }

    /// Whether it is one of the short forms, which also do less in each round.
    bool isShort() const { return !time_ && rounds_ < fewRounds; }

    /// The time to spend, for drills that are measured in time: a round is a second.
    std::chrono::seconds time() const { return time_.value_or(std::chrono::seconds(rounds_)); }

private:
    static constexpr int fewRounds = 10;

    int rounds_ = 0;
    std::optional<std::chrono::seconds> time_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// The random choices of a drill, the same in every run with one seed.
class DrillRandom {
public:
    explicit DrillRandom(std::uint32_t seed) : engine_(seed) {}

    /// 0 to `bound` − 1; 0 for a bound of 0.
    std::uint32_t below(std::uint32_t bound) {
        return bound == 0 ? 0 : static_cast<std::uint32_t>(engine_() % bound);
    }

    /// True once in `times`.
    bool onceIn(std::uint32_t times) { return below(times) == 0; }

    std::chrono::milliseconds upTo(std::chrono::milliseconds most) {
        return std::chrono::milliseconds(below(static_cast<std::uint32_t>(most.count()) + 1));
    }

    template <typename Container>
    auto& oneOf(Container& choices) {
        return choices[below(static_cast<std::uint32_t>(std::size(choices)))];
    }

private:
    std::mt19937 engine_;
};

/// What a drill did and found.
struct DrillReport {
    std::string done;   ///< what was done and how often
    std::string worst;  ///< the worst case that was seen
    std::vector<std::string> failures;

    void require(bool holds, const std::string& failure) {
        if (!holds) {
            failures.push_back(failure);
        }
    }
};

/// A named drill with its lengths in rounds.
struct Drill {
    std::string_view name;
    DrillReport (*run)(const DrillLength& length, DrillRandom& random);
    int fullLength;
    int shortLength;
};

/// In the order in which they run.
std::span<const Drill> allDrills();

/// Runs a drill, prints its line and then its failures to the standard output. True: passed.
bool runDrill(const Drill& drill, const DrillLength& length, std::uint32_t seed);

/// Times are judged in an optimised build without sanitizers and only reported otherwise.
constexpr bool judgesTimes() {
#if defined(NDEBUG) && !defined(KESTRO_SANITIZED)
    return true;
#else
    return false;
#endif
}

}  // namespace kestro::drills
