#pragma once

#include "platform/posix/descriptor.h"

#include <string>

namespace kestro {

/// Opens a file with `accessMode` (O_RDONLY or O_WRONLY) without following a link or blocking, although anyone may
/// write to its directory. A trusted file is a regular file that this user owns, that no other user may write to,
/// and that has no second hard link: otherwise another user could have linked one of our files to this path. A
/// descriptor that is not open: the file is missing or untrusted.
Descriptor openTrusted(const std::string& path, int accessMode);

/// Creates an empty file that only this user may write, unless something already exists at the path.
void createTrusted(const std::string& path);

/// Creates such a file where there is none, also in place of this user's own that is untrusted only because of its
/// mode, as one that a shell has created with a umask of 002. Others may hold that open for writing, so that
/// another mode would not make it trusted. Leaves everything else at the path alone.
void renewTrusted(const std::string& path);

/// Whether an open file is trusted.
bool isTrusted(const Descriptor& file);

}  // namespace kestro
