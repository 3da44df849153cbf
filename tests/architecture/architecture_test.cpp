#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

namespace fs = std::filesystem;

const fs::path root = sourceTree();

struct Include {
    std::string from;  // the including file, relative to the root
    std::string name;  // the text between the quotes or brackets
    bool isQuoted;
};

/// Whether a header belongs to the project, however it is written; a file generated next to its source has no
/// folder.
bool isOurs(const Include& include) {
    static const std::set<std::string> folders{"app",     "bench", "core",  "fuzz",  "platform",
                                               "readout", "shell", "shots", "tests", "ui"};
    return include.isQuoted ? !include.name.ends_with(".moc")
                            : folders.contains(include.name.substr(0, include.name.find('/')));
}

/// The header that a line includes or, in Objective-C++, imports, regardless of spacing; leaves `from` empty.
std::optional<Include> includeIn(std::string_view line) {
    const auto skip = [&line](std::string_view word) {
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        const bool isThere = line.starts_with(word);
        line.remove_prefix(isThere ? word.size() : 0);
        return isThere;
    };
    if (!skip("#") || (!skip("include") && !skip("import"))) {
        return std::nullopt;
    }
    const bool isQuoted = skip("\"");
    const auto end = isQuoted || skip("<") ? line.find(isQuoted ? '"' : '>') : line.npos;
    if (end == line.npos) {
        return std::nullopt;
    }
    return Include{{}, std::string(line.substr(0, end)), isQuoted};
}

std::vector<Include> includesBelow(const std::string& folder) {
    std::vector<Include> found;
    if (!fs::exists(root / folder)) {
        return found;
    }
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
        const auto extension = entry.path().extension();
        if (extension != ".h" && extension != ".cpp" && extension != ".mm") {
            continue;
        }
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);) {
            if (auto include = includeIn(line)) {
                include->from = fs::relative(entry.path(), root).string();
                found.push_back(std::move(*include));
            }
        }
    }
    return found;
}

/// The folders from which a folder's files may include, besides itself.
const std::map<std::string, std::vector<std::string>> allowed = {
    {"core/base", {}},
    {"core/platform", {"core/base"}},
    {"core/model", {"core/base"}},
    {"core/telemetry", {"core/base", "core/platform"}},
    {"core/settings", {"core/base", "core/platform", "core/model"}},
    {"core/engine", {"core/base", "core/platform", "core/model", "core/telemetry", "core/settings"}},
    {"core/cooling",
     {"core/base", "core/platform", "core/model", "core/telemetry", "core/settings", "core/engine"}},
    {"core/power", {"core/base", "core/platform", "core/model", "core/telemetry", "core/settings", "core/engine"}},
    {"core/readout",
     {"core/base", "core/model", "core/telemetry", "core/settings", "core/engine", "core/cooling", "core/power"}},
    {"platform/posix", {"core/base", "core/platform"}},
    {"platform/linux/kernel", {"core/base", "core/platform", "platform/posix"}},
    {"platform/linux/machine",
     {"core/base", "core/platform", "platform/posix", "platform/linux/kernel", "platform/linux/sensors"}},
    {"platform/linux/sensors", {"core/base", "core/platform", "platform/posix", "platform/linux/kernel"}},
    {"platform/linux/network", {"core/base", "core/platform", "platform/posix", "platform/linux/kernel"}},
    {"platform/linux/battery", {"core/base", "core/platform", "platform/posix", "platform/linux/kernel"}},
    {"platform/linux/process", {"core/base", "core/platform", "platform/posix", "platform/linux/kernel"}},
    {"platform/desktop", {"core/base", "core/platform", "platform/posix"}},
    {"platform/macos", {"core/base", "core/platform", "platform/posix"}},
    {"platform/simulated", {"core/base", "core/platform"}},
    {"readout", {}},
    {"ui", {"core"}},
    {"shell", {"core", "ui"}},
    {"shell/linux", {"core", "ui", "shell"}},
    {"shell/macos", {"core", "ui", "shell"}},
    // Without the toolkit, whose headers are not written for Objective-C++.
    {"shell/macos/appkit", {"core", "shell/macos"}},
    {"app", {"core", "ui", "shell"}},
};

/// The composition roots, one for each system: the only files that choose the classes behind the ports.
const std::map<std::string, std::vector<std::string>> compositions = {
    {"app/linux/application.cpp",
     {"app", "core", "platform/desktop", "platform/linux", "shell/linux", "shell/shell.h"}},
    {"app/macos/application.cpp", {"app", "core", "platform/macos", "shell/macos", "shell/shell.h"}},
};

/// The folders that belong to one system.
const std::vector<std::string> systemFolders = {"shell/linux", "shell/macos", "tests/shell/linux",
                                                "tests/shell/macos"};

bool lies(const std::string& file, const std::string& place) {
    return file == place || file.starts_with(place + "/");
}

TEST(Architecture, FoldersIncludeOnlyFromFoldersBelow) {
    for (const auto& [folder, places] : allowed) {
        for (const auto& include : includesBelow(folder)) {
            if (!isOurs(include) || compositions.contains(include.from)) {
                continue;
            }
            const bool fits = lies(include.name, folder) || std::ranges::any_of(places, [&](const auto& place) {
                                  return lies(include.name, place);
                              });
            EXPECT_TRUE(fits) << include.from << " includes " << include.name;
        }
    }
}

TEST(Architecture, ProjectHeadersAreIncludedInQuotes) {
    for (const std::string folder :
         {"core", "platform", "readout", "ui", "shell", "app", "shots", "tests", "bench", "fuzz"}) {
        for (const auto& include : includesBelow(folder)) {
            EXPECT_TRUE(include.isQuoted || !isOurs(include))
                << include.from << " includes <" << include.name << ">";
        }
    }
}

/// The unit that a file belongs to: its own folder if that has a rule, otherwise the one two levels deep.
std::string unitOf(const std::string& file) {
    const auto folder = fs::path(file).parent_path().string();
    const auto second = folder.find('/', folder.find('/') + 1);
    return allowed.contains(folder) ? folder : folder.substr(0, second);
}

/// The folders that each folder includes from.
std::map<std::string, std::set<std::string>> folderArrows() {
    std::map<std::string, std::set<std::string>> arrows;
    for (const std::string folder : {"core", "platform", "ui", "shell", "app"}) {
        for (const auto& include : includesBelow(folder)) {
            if (isOurs(include) && unitOf(include.from) != unitOf(include.name)) {
                arrows[unitOf(include.from)].insert(unitOf(include.name));
            }
        }
    }
    return arrows;
}

TEST(Architecture, FoldersHaveNoIncludeCycles) {
    auto arrows = folderArrows();

    // Repeatedly remove folders that include none of the remaining ones; what is left is a cycle or includes one.
    for (bool isShrinking = true; isShrinking;) {
        isShrinking = std::erase_if(arrows, [&](const auto& arrow) {
                          return std::ranges::none_of(
                              arrow.second, [&](const std::string& other) { return arrows.contains(other); });
                      }) != 0;
    }

    for (const auto& [folder, others] : arrows) {
        ADD_FAILURE() << folder << " is part of an include cycle, or includes one";
    }
}

TEST(Architecture, CoreAndTheKernelFacingPortsAndTheLinePrinterDoNotUseQt) {
    for (const std::string folder :
         {"core", "platform/posix", "platform/linux", "platform/macos", "platform/simulated", "readout"}) {
        for (const auto& include : includesBelow(folder)) {
            EXPECT_FALSE(include.name.starts_with("Q")) << include.from << " includes " << include.name;
        }
    }
}

TEST(Architecture, OnlyTheCompositionRootUsesThePlatform) {
    for (const std::string folder : {"core", "ui", "shell", "app"}) {
        for (const auto& include : includesBelow(folder)) {
            if (compositions.contains(include.from)) {
                continue;
            }
            EXPECT_FALSE(lies(include.name, "platform")) << include.from << " includes " << include.name;
            for (const std::string system : {"shell/linux", "shell/macos"}) {
                EXPECT_TRUE(!lies(include.name, system) || lies(include.from, system))
                    << include.from << " includes " << include.name;
            }
        }
    }
}

TEST(Architecture, EachCompositionRootUsesItsOwnSystem) {
    for (const auto& include : includesBelow("app")) {
        const auto rule = compositions.find(include.from);
        if (rule == compositions.end() || !isOurs(include)) {
            continue;
        }
        EXPECT_TRUE(
            std::ranges::any_of(rule->second, [&](const auto& place) { return lies(include.name, place); }))
            << include.from << " includes " << include.name;
    }
}

TEST(Architecture, TheBuildChoosesTheSystemAndNotThePreprocessor) {
    for (const std::string folder : {"core", "ui", "shell", "app"}) {
        for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
            if (!entry.is_regular_file()) {
                continue;
            }
            std::ifstream file(entry.path());
            for (std::string line; std::getline(file, line);) {
                EXPECT_FALSE(line.starts_with("#if")) << fs::relative(entry.path(), root) << ": " << line;
            }
        }
    }
}

TEST(Architecture, OnlyTheDesktopFoldersUseItsProtocols) {
    for (const std::string folder : {"core", "platform", "ui", "shell", "app"}) {
        for (const auto& include : includesBelow(folder)) {
            const bool isProtocol =
                std::ranges::any_of(std::vector<std::string>{"QDBus", "QtDBus", "xcb/", "X11/", "wayland", "qpa/"},
                                    [&](const std::string& start) { return include.name.starts_with(start); });
            EXPECT_TRUE(!isProtocol || lies(include.from, "platform/desktop") || lies(include.from, "shell/linux"))
                << include.from << " includes " << include.name;
        }
    }
}

TEST(Architecture, OnlyTheMacFoldersUseItsFrameworks) {
    for (const std::string folder : {"core", "platform", "ui", "shell", "app"}) {
        for (const auto& include : includesBelow(folder)) {
            const bool isFramework =
                std::ranges::any_of(std::vector<std::string>{"AppKit/", "CoreFoundation/", "Foundation/", "IOKit/",
                                                             "dispatch/", "mach/"},
                                    [&](const std::string& start) { return include.name.starts_with(start); });
            EXPECT_TRUE(!isFramework || lies(include.from, "platform/macos") || lies(include.from, "shell/macos"))
                << include.from << " includes " << include.name;
        }
    }
}

TEST(Architecture, ThePortablePartsDoNotNameTheirSystem) {
    for (const std::string folder : {"ui", "shell", "app", "tests/ui", "tests/shell", "tests/app"}) {
        for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
            const auto name = fs::relative(entry.path(), root).string();
            const bool isPortable =
                std::ranges::none_of(systemFolders, [&](const auto& place) { return lies(name, place); });
            if (entry.is_directory() || !isPortable || compositions.contains(name) || name.ends_with(".png") ||
                name == "tests/app/symbol_names_test.cpp") {
                continue;
            }
            std::ifstream file(entry.path());
            const std::string text{std::istreambuf_iterator<char>(file), {}};
            EXPECT_EQ(text.find("Linux"), text.npos) << name;
            EXPECT_EQ(text.find("linux"), text.npos) << name;
        }
    }
}

TEST(Architecture, EveryFileOfCoreAndThePlatformHasARule) {
    for (const std::string parent : {"core", "platform"}) {
        for (const auto& entry : fs::recursive_directory_iterator(root / parent)) {
            const auto name = fs::relative(entry.path(), root).string();
            EXPECT_TRUE(entry.is_directory() || allowed.contains(unitOf(name))) << name << " has no rule";
        }
    }
}

}  // namespace
}  // namespace kestro
