#pragma once

#include <string>

namespace kestro {

/// A rate in bytes per second as text: "1.2 MB/s" from a mebibyte on, "240 KB/s" from a kibibyte on, else
/// "512 B/s". What is not a number counts as 0.
std::string formatRate(double bytesPerSec);

/// Bytes as "13.4 GB", of 2^30 bytes each.
std::string formatGigabytes(double bytes);

}  // namespace kestro
