#include "platform/macos/mac_file_events.h"

#include "platform/macos/mac_clock.h"
#include "platform/macos/mac_run_loop.h"
#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace kestro {
namespace {

using fakes::FakeMac;

struct CommandFile {
    FakeMac mac;
    MacClock clock;
    MacRunLoop runLoop{clock};
    MacFileEvents events{runLoop};
    TemporaryDirectory directory;
    std::string path = directory / "command";
    int calls = 0;

    /// As another process of this user.
    void write(const std::string& text) {
        events.createIfMissing(path);
        std::ofstream(path) << text;
    }
    std::unique_ptr<FileEventSource> watch() {
        return events.watchWrites(path, [this] { ++calls; });
    }
    int callsAfterEvents() {
        mac.runLoop.runPending();
        return std::exchange(calls, 0);
    }
};

TEST(MacFileEvents, CallsOnceForWritesSinceTheLastCall) {
    CommandFile file;
    file.events.createIfMissing(file.path);
    const auto source = file.watch();
    ASSERT_TRUE(source);

    file.write("popover\n");
    file.write("hide\n");

    EXPECT_EQ(file.callsAfterEvents(), 1);
    EXPECT_EQ(file.callsAfterEvents(), 0);
    file.write("again");
    EXPECT_EQ(file.callsAfterEvents(), 1);
}

TEST(MacFileEvents, TruncatingIsAWrite) {
    CommandFile file;
    file.write("popover");
    ASSERT_EQ(chmod(file.path.c_str(), 0600), 0);
    const auto source = file.watch();

    file.events.truncate(file.path);

    EXPECT_EQ(file.callsAfterEvents(), 1);
    EXPECT_EQ(file.events.read(file.path), "");
}

TEST(MacFileEvents, FollowsAFileThatIsReplaced) {
    CommandFile file;
    file.events.createIfMissing(file.path);
    const auto source = file.watch();

    const std::string other = file.directory / "other";
    file.events.createIfMissing(other);
    std::filesystem::rename(other, file.path);

    EXPECT_EQ(file.callsAfterEvents(), 1);
    file.write("popover");
    EXPECT_EQ(file.callsAfterEvents(), 1);
}

TEST(MacFileEvents, RecreatesAFileThatIsDeleted) {
    CommandFile file;
    file.events.createIfMissing(file.path);
    const auto source = file.watch();

    std::filesystem::remove(file.path);

    EXPECT_EQ(file.callsAfterEvents(), 1);
    EXPECT_EQ(file.events.read(file.path), "");
    file.write("popover");
    EXPECT_EQ(file.callsAfterEvents(), 1);
}

TEST(MacFileEvents, RecreatesAFileThatIsRenamedAway) {
    CommandFile file;
    file.events.createIfMissing(file.path);
    const auto source = file.watch();

    std::filesystem::rename(file.path, file.directory / "elsewhere");
    EXPECT_EQ(file.callsAfterEvents(), 1);
    std::ofstream(file.directory / "elsewhere") << "text";
    EXPECT_EQ(file.callsAfterEvents(), 0);
    file.write("popover");

    EXPECT_EQ(file.callsAfterEvents(), 1);
}

TEST(MacFileEvents, IgnoresTheFolderWhileTheFileExists) {
    CommandFile file;
    file.events.createIfMissing(file.path);
    const auto source = file.watch();

    EXPECT_EQ(file.mac.dispatch.sources.size(), 1U);
    std::ofstream(file.directory / "unrelated") << "text";

    EXPECT_EQ(file.callsAfterEvents(), 0);
}

TEST(MacFileEvents, CreatesAMissingFile) {
    CommandFile file;
    const auto source = file.watch();
    ASSERT_TRUE(source);

    EXPECT_EQ(file.events.read(file.path), "");
    file.write("popover");

    EXPECT_EQ(file.callsAfterEvents(), 1);
}

TEST(MacFileEvents, ReplacesAnOwnFileThatOthersMayWrite) {
    CommandFile file;
    file.write("popover");
    ASSERT_EQ(chmod(file.path.c_str(), 0666), 0);
    const auto source = file.watch();

    EXPECT_EQ(file.events.read(file.path), "");
    file.write("hide");

    EXPECT_EQ(file.callsAfterEvents(), 1);
    EXPECT_EQ(file.events.read(file.path), "hide");
    ASSERT_EQ(chmod(file.path.c_str(), 0666), 0);
    EXPECT_EQ(file.callsAfterEvents(), 1);
    EXPECT_EQ(file.events.read(file.path), "");
}

TEST(MacFileEvents, CallsWhenAFileBecomesTrusted) {
    CommandFile file;
    file.write("popover");
    const std::string second = file.directory / "second";
    std::filesystem::create_hard_link(file.path, second);
    const auto source = file.watch();

    file.write("hide");
    EXPECT_EQ(file.callsAfterEvents(), 0);
    EXPECT_FALSE(file.events.read(file.path));
    std::filesystem::remove(second);

    EXPECT_EQ(file.callsAfterEvents(), 1);
    EXPECT_EQ(file.events.read(file.path), "hide");
}

TEST(MacFileEvents, WaitsWhileSomethingElseIsAtThePath) {
    CommandFile file;
    std::filesystem::create_symlink("/dev/null", file.path);
    const auto source = file.watch();
    ASSERT_TRUE(source);

    std::ofstream(file.directory / "unrelated") << "text";
    EXPECT_EQ(file.callsAfterEvents(), 0);
    std::filesystem::remove(file.path);
    EXPECT_EQ(file.callsAfterEvents(), 1);
    file.write("popover");

    EXPECT_EQ(file.callsAfterEvents(), 1);
}

TEST(MacFileEvents, DoesNotFollowLinks) {
    CommandFile file;
    const std::string target = file.directory / "target";
    file.events.createIfMissing(target);
    std::filesystem::create_symlink(target, file.path);
    const auto source = file.watch();

    std::ofstream(target) << "popover";

    EXPECT_EQ(file.callsAfterEvents(), 0);
    EXPECT_FALSE(file.events.read(file.path));
}

TEST(MacFileEvents, CannotWatchInAMissingFolder) {
    CommandFile file;

    EXPECT_FALSE(file.events.watchWrites(file.directory / "missing/command", [] {}));
}

TEST(MacFileEvents, MayBeCancelledInItsOwnCallback) {
    CommandFile file;
    file.events.createIfMissing(file.path);
    std::unique_ptr<FileEventSource> source;
    source = file.events.watchWrites(file.path, [&] {
        ++file.calls;
        source.reset();
    });

    file.write("popover");
    EXPECT_EQ(file.callsAfterEvents(), 1);
    file.write("popover");

    EXPECT_EQ(file.callsAfterEvents(), 0);
    EXPECT_TRUE(file.mac.dispatch.sources.empty());
}

TEST(MacFileEvents, IsNotCalledAfterItsEnd) {
    CommandFile file;
    file.events.createIfMissing(file.path);
    auto source = file.watch();

    file.write("popover");
    source.reset();

    EXPECT_EQ(file.callsAfterEvents(), 0);
}

TEST(MacFileEvents, HoldsNothingWhenCallsFail) {
    const TemporaryDirectory directory;
    const std::string path = directory / "command";
    useWithFailingCalls([](FakeMac&) {},
                        [&path](FakeMac& mac) {
                            MacClock clock;
                            MacRunLoop runLoop(clock);
                            MacFileEvents events(runLoop);
                            events.createIfMissing(path);
                            const auto source = events.watchWrites(path, [] {});
                            EXPECT_EQ(source == nullptr,
                                      mac.everythingFails || mac.failing.contains("dispatch_source_create"));
                            std::ofstream(path) << "text";
                            mac.runLoop.runPending();
                            std::filesystem::remove(path);
                            mac.runLoop.runPending();
                        });
}

}  // namespace
}  // namespace kestro
