#include "core/base/program_version.h"

#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace kestro {
namespace {

TEST(ProgramVersion, IsTheNewestOfTheChangelog) {
    std::ifstream changelog(sourceTree() + "/CHANGELOG.md");
    std::string line;
    while (std::getline(changelog, line) && !line.starts_with("## ")) {
    }

    EXPECT_TRUE(line.starts_with("## " + std::string(programVersion()) + " (")) << line;
}

}  // namespace
}  // namespace kestro
