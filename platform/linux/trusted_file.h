#pragma once

#include <string>

#include "platform/posix/descriptor.h"

namespace kestro {

/// Opens a file with `accessMode` (O_RDONLY or O_WRONLY) without following a link and without blocking, although
/// anybody may write to its directory. Trusted is a regular file that this user owns, that nobody else may
/// write to, and that has no second name: otherwise a stranger could have linked a file of ours to this path.
/// A descriptor that is not open: there is no file, or none to be trusted.
Descriptor openTrusted(const std::string& path, int accessMode);

}  // namespace kestro
