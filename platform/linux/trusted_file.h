#pragma once

#include <string>

#include "platform/linux/descriptor.h"

namespace kestro {

/// Whether a path can be used although anybody may write to its directory.
enum class FileTrust { trusted, missing, untrusted };

/// An opened file, or why there is none.
struct TrustedFile {
    Descriptor descriptor;
    FileTrust trust = FileTrust::untrusted;
};

/// Opens a file with `accessMode` (O_RDONLY or O_WRONLY) without following a link and without blocking.
/// Trusted is a regular file that this user owns, that nobody else may write to, and that has no second name:
/// otherwise a stranger could have linked a file of ours to this path.
TrustedFile openTrusted(const std::string& path, int accessMode);

}  // namespace kestro
