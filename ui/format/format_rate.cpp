#include "ui/format/format_rate.h"

#include <fmt/format.h>

#include <cmath>

namespace kestro {

namespace {

constexpr double kKilobyte = 1024;
constexpr double kMegabyte = 1024 * kKilobyte;

}  // namespace

std::string formatRate(double bytesPerSec) {
    const double rate = std::isnan(bytesPerSec) ? 0 : bytesPerSec;
    if (rate >= kMegabyte) {
        return fmt::format("{:.1f} MB/s", rate / kMegabyte);
    }
    if (rate >= kKilobyte) {
        return fmt::format("{:.0f} KB/s", rate / kKilobyte);
    }
    return fmt::format("{:.0f} B/s", rate);
}

}  // namespace kestro
