#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace kestro {
namespace {

namespace fs = std::filesystem;

void appendFilesBelow(const fs::path& folder, std::vector<fs::path>& files) {
    std::error_code none;
    for (const auto& entry : fs::recursive_directory_iterator(folder, none)) {
        if (entry.is_regular_file(none)) {
            files.push_back(entry.path());
        }
    }
}

/// Without spare capacity, so that the address sanitizer detects a read past the end.
std::vector<std::uint8_t> contentsOf(const fs::path& file) {
    std::vector<std::uint8_t> bytes(fs::file_size(file));
    std::ifstream stream(file, std::ios::binary);
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    EXPECT_TRUE(stream) << file;
    return bytes;
}

/// Runs the fuzz target on all its seeds without a fuzzer, in the same build as the other tests.
TEST(FuzzTarget, HoldsForEverySeed) {
    std::vector<fs::path> files;
    appendFilesBelow(sourceTree() + "/tests/fixtures", files);
    const auto machines = files.size();
    appendFilesBelow(sourceTree() + "/fuzz/corpus/" KESTRO_FUZZ_TARGET, files);
    ASSERT_GT(machines, 0U);
    ASSERT_GT(files.size(), machines);

    std::ranges::sort(files);
    for (const auto& file : files) {
        // Unbuffered, so that the last name printed is the seed that aborts the target.
        std::cerr << file.string() << '\n';
        const auto bytes = contentsOf(file);
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }

    std::cout << files.size() << " inputs\n";
}

}  // namespace
}  // namespace kestro
