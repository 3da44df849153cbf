#pragma once

#include <QString>

#include <cstdint>

namespace kestro {

/// A measured value truncated to the whole number that is shown. NaN counts as 0; values beyond any counter are
/// clamped to a billion.
qint64 wholeNumber(double value);

/// wholeNumber as text, "18".
QString wholeText(double value);

/// wholeNumber with a percent sign, "18%".
QString percentText(double value);

/// A value rounded to one decimal, "6.1". NaN counts as 0.
QString oneDecimalText(double value);

/// Bytes as gigabytes of 2^30 bytes.
double gigabytes(std::uint64_t bytes);

/// Gigabytes as text, "13.4 GB".
QString gigabytesText(std::uint64_t bytes);

}  // namespace kestro
