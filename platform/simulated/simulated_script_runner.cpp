#include "platform/simulated/simulated_script_runner.h"

#include <fmt/format.h>

namespace kestro {

void SimulatedScriptRunner::execute(const std::string& source) {
    sources.push_back(source);
    if (refusal.strikes()) {
        return;
    }
    for (const int mode : {0, 1, 2}) {
        if (source ==
            fmt::format("do shell script \"pmset -a powermode {}\" with administrator privileges", mode)) {
            commandRunner_.powerMode = mode;
        }
    }
}

}  // namespace kestro
