#include "platform/posix/trusted_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace kestro {

Descriptor openTrusted(const std::string& path, int accessMode) {
    Descriptor file(open(path.c_str(), accessMode | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    return isTrusted(file) ? std::move(file) : Descriptor();
}

void createTrusted(const std::string& path) {
    const Descriptor created(
        open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
}

void renewTrusted(const std::string& path) {
    struct stat found {};
    const bool isOwnButShared = lstat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode) &&
                                found.st_uid == geteuid() && found.st_nlink == 1 &&
                                (found.st_mode & (S_IWGRP | S_IWOTH)) != 0;
    if (isOwnButShared) {
        unlink(path.c_str());
    }
    createTrusted(path);
}

bool isTrusted(const Descriptor& file) {
    struct stat status {};
    return file.isOpen() && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0 && status.st_nlink <= 1;
}

}  // namespace kestro
