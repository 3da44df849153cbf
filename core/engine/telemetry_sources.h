#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace kestro {

/// The sources that the engine samples, one reader each.
enum class TelemetrySource : std::uint8_t { fans, memory, thermals, cpu, disk, network, power };

inline constexpr std::size_t telemetrySourceCount = 7;

/// A set of sources.
class TelemetrySources {
public:
    constexpr TelemetrySources() = default;
    TelemetrySources(std::initializer_list<TelemetrySource> sources) {
        for (const TelemetrySource source : sources) {
            insert(source);
        }
    }

    void insert(TelemetrySource source) { sources_.set(static_cast<std::size_t>(source)); }
    bool contains(TelemetrySource source) const { return sources_.test(static_cast<std::size_t>(source)); }

    friend bool operator==(const TelemetrySources&, const TelemetrySources&) = default;

private:
    std::bitset<telemetrySourceCount> sources_;
};

}  // namespace kestro
