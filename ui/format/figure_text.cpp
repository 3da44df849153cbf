#include "ui/format/figure_text.h"

#include "core/base/text.h"

#include <fmt/format.h>

#include <cmath>

namespace kestro {

namespace {

constexpr double kilobyte = 1024;
constexpr double megabyte = 1024 * kilobyte;
constexpr double gigabyte = 1024 * megabyte;

}  // namespace

QString wholeText(double value) {
    return QString::number(wholeNumber(value));
}

QString percentText(double value) {
    return wholeText(value) + QLatin1Char('%');
}

QString oneDecimalText(double value) {
    return QString::number(std::isnan(value) ? 0 : value, 'f', 1);
}

double gigabytes(std::uint64_t bytes) {
    return static_cast<double>(bytes) / gigabyte;
}

QString gigabytesText(std::uint64_t bytes) {
    return oneDecimalText(gigabytes(bytes)) + QStringLiteral(" GB");
}

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
