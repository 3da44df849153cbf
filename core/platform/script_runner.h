#pragma once

#include <string>

namespace kestro {

/// Executes a script of the scripting service. The system may ask the user for administrator consent, so a call
/// may block until the user responds. Any background thread.
class ScriptRunner {
public:
    virtual ~ScriptRunner() = default;

    /// Returns when the script has ended. Callers need neither the result nor any error.
    virtual void execute(const std::string& source) = 0;
};

}  // namespace kestro
