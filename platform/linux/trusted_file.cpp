#include "platform/linux/trusted_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace kestro {

TrustedFile openTrusted(const std::string& path, int accessMode) {
    Descriptor file(open(path.c_str(), accessMode | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen()) {
        return {Descriptor(), errno == ENOENT ? FileTrust::missing : FileTrust::untrusted};
    }
    struct stat status {};
    if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_uid != geteuid() ||
        (status.st_mode & (S_IWGRP | S_IWOTH)) != 0 || status.st_nlink > 1) {
        return {Descriptor(), FileTrust::untrusted};
    }
    return {std::move(file), FileTrust::trusted};
}

}  // namespace kestro
