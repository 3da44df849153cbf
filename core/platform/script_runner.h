#pragma once

#include <string>

namespace kestro {

/// Executes a script of the scripting service; the system may ask the user for an administrator's consent,
/// so a call can take as long as a person does. Any background thread.
class ScriptRunner {
public:
    virtual ~ScriptRunner() = default;

    /// Returns when the script has ended. The result and any error are of no use to callers.
    virtual void execute(const std::string& source) = 0;
};

}  // namespace kestro
