#include "tests/drills/drill.h"
#include "tests/support/sealed_environment.h"

#include <QApplication>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>
#include <string_view>

using namespace kestro::drills;

namespace {

std::optional<std::uint32_t> number(const char* text) {
    std::uint32_t value = 0;
    const char* const end = text + std::strlen(text);
    const auto [rest, error] = std::from_chars(text, end, value);
    return error == std::errc() && rest == end ? std::optional(value) : std::nullopt;
}

/// A seed from the environment repeats a run.
std::uint32_t chosenSeed() {
    const char* const given = std::getenv("KESTRO_DRILL_SEED");
    return (given != nullptr ? number(given) : std::nullopt).value_or(std::random_device{}());
}

}  // namespace

/// kestro_drill [NAME|all [SECONDS]]: exits with status 1 if a drill failed, with 2 for other arguments.
int main(int argc, char** argv) {
    const std::string_view name = argc > 1 ? argv[1] : "all";
    const auto seconds = argc > 2 ? number(argv[2]) : std::nullopt;
    const std::uint32_t seed = chosenSeed();
    const kestro::SealedEnvironment environment;
    const QApplication application(argc, argv);
    bool isKnown = false;
    bool havePassed = true;
    for (const Drill& drill : allDrills()) {
        if (name != "all" && name != drill.name) {
            continue;
        }
        isKnown = true;
        const DrillLength length =
            seconds ? DrillLength(std::chrono::seconds(*seconds)) : DrillLength(drill.fullLength);
        havePassed = runDrill(drill, length, seed) && havePassed;
    }
    if (!isKnown) {
        std::fputs("kestro_drill [NAME|all [SECONDS]]; NAME is one of:", stderr);
        for (const Drill& drill : allDrills()) {
            std::fprintf(stderr, " %.*s", static_cast<int>(drill.name.size()), drill.name.data());
        }
        std::fputs("\n", stderr);
        return 2;
    }
    return havePassed ? EXIT_SUCCESS : EXIT_FAILURE;
}
