#include "platform/macos/mac_script_runner.h"

#include "platform/posix/child_process.h"

#include <chrono>

namespace kestro {

void MacScriptRunner::execute(const std::string& source) {
    runChild({.executable = interpreter_,
              .arguments = {"-e", source},
              .time = std::chrono::hours(1),
              .keepWaiting = [this] { return !isStopped_; }});
}

}  // namespace kestro
