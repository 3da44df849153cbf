#include "app/application.h"

#include <cstdlib>

/// The program as it is shipped, but for its command file, which lies in the session's runtime directory: tests
/// that run at the same time, and a Kestro that somebody uses, never take each other's commands.
int main(int /*argumentCount*/, char** arguments) {
    const char* const runtimeDirectory = std::getenv("XDG_RUNTIME_DIR");
    if (runtimeDirectory == nullptr) {
        return EXIT_FAILURE;
    }
    return kestro::runApplication(arguments, std::string(runtimeDirectory) + "/.kestro_cmd");
}
