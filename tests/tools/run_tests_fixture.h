#pragma once

#include "tests/support/places.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace kestro {

/// Runs tools/run_tests.sh in a temporary folder with its own test programs.
class RunTests : public testing::Test {
protected:
    RunTests() { folder.write("tests/hostile_environment", "LC_ALL=de_DE.UTF-8\n"); }

    /// Adds a program with these tests of the troubled program.
    void addProgram(const std::string& name, const std::string& filter) {
        addScript(name,
                  "exec '" + buildTree() + "/tests/troubled_program' --gtest_filter='" + filter + "' \"$@\"");
    }

    void addScript(const std::string& name, const std::string& script) {
        folder.write("build/fake/tests/" + name, "#!/bin/sh\n" + script + '\n');
        std::filesystem::permissions(folder / ("build/fake/tests/" + name), std::filesystem::perms::owner_all);
    }

    /// Runs `script`, where $run is the runner, and stores its output and status. Shells print warnings in a
    /// locale that is not installed.
    void shell(const std::string& script) {
        const std::string command = "export LC_ALL=C && cd '" + folder.path().string() +
                                    "' && exec 2>errors && run='" + sourceTree() + "/tools/run_tests.sh' && " +
                                    script;
        FILE* const stream = popen(command.c_str(), "r");
        ASSERT_NE(stream, nullptr);
        std::array<char, 4096> piece{};
        while (std::fgets(piece.data(), piece.size(), stream) != nullptr) {
            output += piece.data();
        }
        status = pclose(stream);
        std::ostringstream text;
        text << std::ifstream(folder / "errors").rdbuf();
        errors = text.str();
    }

    void run(const std::string& arguments = "") { shell("\"$run\" fake " + arguments); }

    /// Whether the process in the file "pid" runs. A zombie has no command line.
    bool isAlive() const {
        std::string pid;
        std::ifstream(folder / "pid") >> pid;
        EXPECT_NE(pid, "");
        std::ifstream commandLine("/proc/" + pid + "/cmdline");
        return commandLine.peek() != std::ifstream::traits_type::eof();
    }

    std::string lastLine() const {
        const auto start = output.rfind('\n', output.size() - 2);
        return output.substr(start == output.npos ? 0 : start + 1);
    }

    // Beside the test programs, since programs in /tmp may be forbidden.
    TemporaryDirectory folder{buildTree()};
    std::string output;
    std::string errors;
    int status = 0;
};

}  // namespace kestro
