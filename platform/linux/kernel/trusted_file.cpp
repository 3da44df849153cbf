#include "platform/linux/kernel/trusted_file.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace kestro {

Descriptor openTrusted(const std::string& path, int accessMode) {
    Descriptor file(open(path.c_str(), accessMode | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    const bool isTrusted = file.isOpen() && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
                           status.st_uid == geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0 &&
                           status.st_nlink <= 1;
    return isTrusted ? std::move(file) : Descriptor();
}

}  // namespace kestro
