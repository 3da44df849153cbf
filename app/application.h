#pragma once

#include <string>

namespace kestro {

/// Runs the whole program until it quits and returns its exit status: the first start shows the status item; a
/// second one asks the first for its dashboard and ends at once. `arguments` are those of main(), of which only
/// the program's name is read. Commands are taken from `commandFile`. Call it once, on the main thread.
int runApplication(char** arguments, const std::string& commandFile);

}  // namespace kestro
