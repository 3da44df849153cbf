#include "shell/linux/memory_trim.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace kestro {
namespace {

/// In KB: what this program has mapped from files.
long residentOfFiles() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != "RssFile:") {
    }
    long kilobytes = 0;
    status >> kilobytes;
    return kilobytes;
}

TEST(MemoryTrim, DropsPagesThatAreReadAgainWhereTheyAreUsed) {
    const long before = residentOfFiles();
    ASSERT_GT(before, 0);

    trimMemory();

    EXPECT_LT(residentOfFiles(), before * 3 / 4);
    EXPECT_GT(residentOfFiles(), 0);
}

}  // namespace
}  // namespace kestro
