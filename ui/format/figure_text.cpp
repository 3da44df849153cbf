#include "ui/format/figure_text.h"

#include "core/base/text.h"

#include <cmath>

namespace kestro {

namespace {

constexpr double bytesPerGigabyte = 1073741824.0;

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
    return static_cast<double>(bytes) / bytesPerGigabyte;
}

QString gigabytesText(std::uint64_t bytes) {
    return oneDecimalText(gigabytes(bytes)) + QStringLiteral(" GB");
}

}  // namespace kestro
