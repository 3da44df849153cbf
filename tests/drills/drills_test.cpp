#include "tests/drills/drill.h"
#include "tests/support/sealed_environment.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace kestro::drills {
namespace {

/// The same choices in every run of the tests; the drills themselves choose a seed.
constexpr std::uint32_t seedOfTests = 20'250'612;

std::vector<Drill> drillsOfThisProgram() {
    std::vector<Drill> chosen;
    for (const Drill& drill : allDrills()) {
        if ((drill.name == "faults") == KESTRO_UNIT_DRILLS) {
            chosen.push_back(drill);
        }
    }
    return chosen;
}

class ShortDrill : public testing::TestWithParam<Drill> {};

TEST_P(ShortDrill, Passes) {
    EXPECT_TRUE(runDrill(GetParam(), DrillLength(GetParam().shortLength), seedOfTests));
}

INSTANTIATE_TEST_SUITE_P(Every, ShortDrill, testing::ValuesIn(drillsOfThisProgram()),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace kestro::drills

int main(int argc, char** argv) {
    const kestro::SealedEnvironment environment;
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
