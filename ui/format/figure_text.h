#pragma once

#include <QString>

#include <cstdint>

namespace kestro {

/// A measured value as the whole number that is shown, towards zero. What is not a number counts as 0, and
/// what no counter can reach is cut at a billion.
qint64 wholeNumber(double value);

/// The same as a text, "18".
QString wholeText(double value);

/// The same with its sign, "18%".
QString percentText(double value);

/// A value rounded to one decimal, "6.1". What is not a number counts as 0.
QString oneDecimalText(double value);

/// Bytes as gigabytes of 2^30 bytes.
double gigabytes(std::uint64_t bytes);

/// The same as a text, "13.4 GB".
QString gigabytesText(std::uint64_t bytes);

}  // namespace kestro
