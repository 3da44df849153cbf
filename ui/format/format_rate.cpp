#include "ui/format/format_rate.h"

#include <fmt/format.h>

#include <cmath>

namespace kestro {

namespace {

constexpr double kilobyte = 1024;
constexpr double megabyte = 1024 * kilobyte;

}  // namespace

std::string formatRate(double bytesPerSec) {
    const double rate = std::isnan(bytesPerSec) ? 0 : bytesPerSec;
    if (rate >= megabyte) {
        return fmt::format("{:.1f} MB/s", rate / megabyte);
    }
    if (rate >= kilobyte) {
        return fmt::format("{:.0f} KB/s", rate / kilobyte);
    }
    return fmt::format("{:.0f} B/s", rate);
}

}  // namespace kestro
