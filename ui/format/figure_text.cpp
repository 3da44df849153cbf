#include "ui/widgets/whole_number.h"

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double kLimit = 1e9;

}  // namespace

qint64 wholeNumber(double value) {
    return std::isnan(value) ? 0 : static_cast<qint64>(std::clamp(value, -kLimit, kLimit));
}

QString wholeText(double value) {
    return QString::number(wholeNumber(value));
}

}  // namespace kestro
