#pragma once

#include <QString>

#include <cstdint>
#include <string>

namespace kestro {

/// A value truncated to a whole number, "18".
QString wholeText(double value);

/// The same with a percent sign, "18%".
QString percentText(double value);

/// A value rounded to one decimal, "6.1". NaN counts as 0.
QString oneDecimalText(double value);

/// Bytes as gigabytes of 2^30 bytes.
double gigabytes(std::uint64_t bytes);

/// Gigabytes as text, "13.4 GB".
QString gigabytesText(std::uint64_t bytes);

/// A rate in bytes per second as text: "1.2 MB/s" from one mebibyte, "240 KB/s" from one kibibyte, else "512 B/s".
/// A value that is not a number counts as 0.
std::string formatRate(double bytesPerSec);

}  // namespace kestro
