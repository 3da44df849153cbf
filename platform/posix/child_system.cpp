#include "platform/posix/child_system.h"

#include <fcntl.h>
#include <unistd.h>

#ifdef __APPLE__
#include <crt_externs.h>
#else
#include <sys/syscall.h>
#endif

namespace kestro {

#ifdef __APPLE__

bool openPrivatePipe(std::array<int, 2>& ends) {
    if (pipe(ends.data()) != 0) {
        return false;
    }
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    return true;
}

short closeOtherDescriptors([[maybe_unused]] posix_spawn_file_actions_t& actions) {
    return POSIX_SPAWN_CLOEXEC_DEFAULT;
}

char** environmentOfThisProcess() {
    return *_NSGetEnviron();
}

int openProcess([[maybe_unused]] pid_t child) {
    return -1;
}

#else

bool openPrivatePipe(std::array<int, 2>& ends) {
    return pipe2(ends.data(), O_CLOEXEC) == 0;
}

short closeOtherDescriptors(posix_spawn_file_actions_t& actions) {
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    return 0;
}

char** environmentOfThisProcess() {
    return environ;
}

int openProcess(pid_t child) {
    // Sandboxes may refuse it.
    return static_cast<int>(syscall(SYS_pidfd_open, child, 0));
}

#endif

}  // namespace kestro
