#pragma once

#include <string>

namespace kestro {

/// A rate in bytes per second as text: "1.2 MB/s" from one mebibyte, "240 KB/s" from one kibibyte, else "512 B/s".
/// A value that is not a number counts as 0.
std::string formatRate(double bytesPerSec);

}  // namespace kestro
