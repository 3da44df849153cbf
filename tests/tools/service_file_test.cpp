#include "tests/support/places.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace kestro {
namespace {

namespace fs = std::filesystem;

constexpr char busConfiguration[] = R"(<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <servicedir>services</servicedir>
  <policy context="default">
    <allow send_destination="*"/><allow receive_type="signal"/><allow receive_type="method_return"/>
    <allow receive_type="error"/><allow own="*"/>
  </policy>
</busconfig>
)";

/// The service file for a program in a folder of that name.
class ServiceFile : public testing::TestWithParam<const char*> {
protected:
    /// Whether the command succeeds in the test's folder.
    bool shell(const std::string& script) const {
        const std::string command = "cd '" + folder.path().string() + "' && { " + script + "; } >log 2>&1";
        return std::system(command.c_str()) == 0;
    }

    TemporaryDirectory folder{buildTree()};
};

TEST_P(ServiceFile, LetsTheBusStartTheProgram) {
    if (!shell("command -v dbus-run-session && command -v dbus-send")) {
        GTEST_SKIP() << "needs dbus-run-session and dbus-send";
    }
    const std::string parent = GetParam();
    const std::string program = folder / (parent + "/kestro");
    folder.write(parent + "/kestro", "#!/bin/sh\n: >started\nexit 1\n");
    fs::permissions(program, fs::perms::owner_all);
    folder.write("program", program);
    folder.write("bus.conf", busConfiguration);
    folder.write("services/.keep", "");
    folder.write("write.cmake", "include(\"" + sourceTree() + R"(/packaging/service_file.cmake")
file(READ program program)
kestro_write_service_file("${CMAKE_CURRENT_LIST_DIR}/services/kestro.Readout.service" "${program}")
)");
    ASSERT_TRUE(shell("cmake -P write.cmake"));

    // The program fails without taking the name, so the bus answers at once.
    shell(
        "dbus-run-session --config-file=bus.conf -- dbus-send --session --print-reply "
        "--dest=org.freedesktop.DBus / org.freedesktop.DBus.StartServiceByName string:kestro.Readout uint32:0");

    EXPECT_TRUE(fs::exists(folder / "started"));
}

INSTANTIATE_TEST_SUITE_P(Prefixes, ServiceFile,
                         testing::Values("plain", "with spaces", "it's", "a \"quoted\" $HOME", "back\\slash",
                                         "#é"));

}  // namespace
}  // namespace kestro
