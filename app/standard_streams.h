#pragma once

#include <string_view>

/// The standard streams of the process. Kestro writes nothing while it runs, and neither may the libraries that it
/// uses, some of which print to the error stream. Main thread.
namespace kestro::standard_streams {

/// Connects the output and the error stream to the null device, until the process ends. An input stream that is
/// closed is connected to it too, so that no file of the program gets the number of a standard stream.
void silence();

/// Writes a line to the error stream that the process was started with; nothing after `abandon`.
void complain(std::string_view line);

/// Closes the error stream that the process was started with: whoever reads it need not wait any longer.
void abandon();

}  // namespace kestro::standard_streams
