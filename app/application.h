#pragma once

#include <string>

namespace kestro {

/// Runs the whole program until it quits and returns its exit status. The first instance shows the status item;
/// a second one asks the first to show its dashboard and exits. Without a display it prints one line that says so
/// and exits with status 1. `arguments` are those of main(); only the program's name is read. Commands are read
/// from `commandFile` and, where users have a runtime directory, from "kestro.cmd" there. Each system has its own
/// implementation, of which the build chooses one. Call once, on the main thread.
int runApplication(char** arguments, const std::string& commandFile);

}  // namespace kestro
