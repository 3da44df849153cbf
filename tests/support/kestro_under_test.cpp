#include "app/application.h"
#include "app/standard_streams.h"

#include <cstdio>
#include <cstdlib>

/// The program as shipped, except that its command file is in the session's runtime directory, so that
/// concurrent tests and a Kestro in daily use never receive each other's commands, and that a sanitizer can
/// report.
int main(int /*argumentCount*/, char** arguments) {
    const char* const runtimeDirectory = std::getenv("XDG_RUNTIME_DIR");
    if (runtimeDirectory == nullptr) {
        std::fputs("XDG_RUNTIME_DIR is not set\n", stderr);
        return EXIT_FAILURE;
    }
#ifndef KESTRO_SANITIZED
    kestro::standard_streams::silence();
#endif
    return kestro::runApplication(arguments, std::string(runtimeDirectory) + "/.kestro_cmd");
}
