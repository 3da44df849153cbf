#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kestro {
namespace {

namespace fs = std::filesystem;

const fs::path root = KESTRO_SOURCE_DIR;

struct Include {
    std::string from;  // the file, from the root
    std::string name;  // what stands between the quotes or brackets
    bool quoted;
};

std::vector<Include> includesBelow(const std::string& folder) {
    std::vector<Include> found;
    if (!fs::exists(root / folder)) {
        return found;
    }
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
        const auto extension = entry.path().extension();
        if (extension != ".h" && extension != ".cpp") {
            continue;
        }
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);) {
            if (!line.starts_with("#include ") || line.size() < 12) {
                continue;
            }
            const char open = line[9];
            const auto close = line.find(open == '"' ? '"' : '>', 10);
            if (close != std::string::npos) {
                found.push_back(
                    {fs::relative(entry.path(), root).string(), line.substr(10, close - 10), open == '"'});
            }
        }
    }
    return found;
}

/// The folders that a folder's files may include from, besides itself.
const std::map<std::string, std::vector<std::string>> allowed = {
    {"core/base", {}},
    {"core/platform", {"core/base"}},
    {"core/telemetry", {"core/base", "core/platform"}},
    {"core/settings", {"core/base", "core/platform", "core/cooling/fan_curve.h", "core/power/keep_awake_types.h"}},
    {"core/engine", {"core/base", "core/platform", "core/telemetry", "core/settings"}},
    {"core/cooling", {"core/base", "core/platform", "core/telemetry", "core/settings", "core/engine"}},
    {"core/power", {"core/base", "core/platform", "core/telemetry", "core/settings", "core/engine"}},
    {"core/readout",
     {"core/base", "core/telemetry", "core/settings", "core/engine", "core/cooling", "core/power"}},
    {"platform/posix", {}},
    {"platform/linux", {"core/base", "core/platform", "platform/posix"}},
    {"platform/desktop", {"core/base", "core/platform", "platform/posix"}},
    {"platform/simulated", {"core/base", "core/platform"}},
    {"ui", {"core"}},
    {"app", {"core", "ui"}},
};

bool lies(const std::string& file, const std::string& place) {
    return file == place || file.starts_with(place + "/");
}

TEST(Architecture, EveryFolderIncludesOnlyFromTheFoldersBelowIt) {
    for (const auto& [folder, places] : allowed) {
        for (const auto& include : includesBelow(folder)) {
            if (!include.quoted || include.from == "app/main.cpp") {
                continue;
            }
            const bool fits = lies(include.name, folder) || std::ranges::any_of(places, [&](const auto& place) {
                                  return lies(include.name, place);
                              });
            // A file generated beside its source carries no folder.
            const bool generated = include.name.ends_with(".moc");
            EXPECT_TRUE(fits || generated) << include.from << " includes " << include.name;
        }
    }
}

TEST(Architecture, ValueTypesThatSettingsBorrowStandAlone) {
    for (const std::string header : {"core/cooling/fan_curve.h", "core/power/keep_awake_types.h"}) {
        const auto folder = fs::path(header).parent_path().string();
        for (const auto& include : includesBelow(folder)) {
            if (include.from == header && include.quoted) {
                EXPECT_TRUE(lies(include.name, "core/base")) << header << " includes " << include.name;
            }
        }
    }
}

TEST(Architecture, CoreAndTheKernelFacingPortsKnowNoQt) {
    for (const std::string folder : {"core", "platform/posix", "platform/linux", "platform/simulated"}) {
        for (const auto& include : includesBelow(folder)) {
            EXPECT_FALSE(include.name.starts_with("Q")) << include.from << " includes " << include.name;
        }
    }
}

TEST(Architecture, OnlyMainNamesTheMachine) {
    for (const std::string folder : {"core", "ui", "app"}) {
        for (const auto& include : includesBelow(folder)) {
            if (include.from != "app/main.cpp") {
                EXPECT_FALSE(include.name.starts_with("platform/"))
                    << include.from << " includes " << include.name;
            }
        }
    }
}

TEST(Architecture, EveryFolderOfCoreHasItsRule) {
    std::set<std::string> known;
    for (const auto& [folder, places] : allowed) {
        known.insert(folder);
    }
    for (const std::string parent : {"core", "platform"}) {
        for (const auto& entry : fs::directory_iterator(root / parent)) {
            if (entry.is_directory()) {
                const auto name = fs::relative(entry.path(), root).string();
                EXPECT_TRUE(known.contains(name)) << name << " has no rule";
            }
        }
    }
}

}  // namespace
}  // namespace kestro
