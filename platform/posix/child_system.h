#pragma once

#include <spawn.h>
#include <sys/types.h>

#include <array>

namespace kestro {

// What running a child needs and each system does in its own way. Any thread.

/// Opens a pipe, reading end first, that no other child inherits. False: no descriptor is left.
bool openPrivatePipe(std::array<int, 2>& ends);

/// Adds to `actions`, or to the returned flags of the new process, that it inherits standard input, output and
/// error only. Call it after these are set up.
short closeOtherDescriptors(posix_spawn_file_actions_t& actions);

/// The variables that a child inherits.
char** environmentOfThisProcess();

/// A descriptor that becomes readable when the child exits. -1: the system has none to offer.
int openProcess(pid_t child);

}  // namespace kestro
