#pragma once

#include <string>

namespace kestro {

/// A rate in bytes per second as text: "1.2 MB/s" from a mebibyte on, "240 KB/s" from a kibibyte on, else
/// "512 B/s". What is not a number counts as 0.
std::string formatRate(double bytesPerSec);

}  // namespace kestro
