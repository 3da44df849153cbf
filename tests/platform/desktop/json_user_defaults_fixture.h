#pragma once

#include "platform/desktop/json_user_defaults.h"
#include "tests/platform/desktop/manual_run_loop.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

inline std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Preferences in a temporary directory, with a run loop driven by the test.
class JsonUserDefaultsTest : public testing::Test {
protected:
    void write(const std::string& text) {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << text;
    }

    std::vector<std::string> filesInDirectory() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path.parent_path())) {
            names.push_back(entry.path().filename());
        }
        return names;
    }

    JsonUserDefaults open() { return {runLoop, path}; }

    /// What another process would read now.
    std::optional<PreferenceValue> stored(std::string_view key) {
        const auto values = PreferencesFile(path).load();
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    /// Triggers the write that is due half a second after an assignment.
    void passTheRest() {
        runLoop.fireTimers();
        runLoop.runTasks();
    }

    QTemporaryDir directory;
    std::filesystem::path path =
        std::filesystem::path(directory.path().toStdString()) / "config" / "kestro" / "preferences.json";
    test::ManualRunLoop runLoop;
};

}  // namespace kestro
