#include "platform/linux/kernel/linux_file_events.h"

#include "tests/platform/linux/kernel/linux_file_events_fixture.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <optional>
#include <string>

namespace kestro {
namespace {

TEST_F(LinuxFileEventsTest, CreatesAFileThatOnlyThisUserMayAccess) {
    EXPECT_EQ(modeOf(path), 0600u);
    EXPECT_EQ(events.read(path), "");
}

TEST_F(LinuxFileEventsTest, LeavesAnExistingFileUnchanged) {
    write("word");

    events.createIfMissing(path);

    EXPECT_EQ(events.read(path), "word");
}

TEST_F(LinuxFileEventsTest, CallsAfterAWrite) {
    const auto source = watch();

    write("popover\n");

    ASSERT_TRUE(loop.runNext());
    EXPECT_EQ(seen, "popover\n;");
}

TEST_F(LinuxFileEventsTest, FollowsTheFileThroughReplacement) {
    const auto source = watch();

    directory.write("other", "moved");
    rename((directory / "other").c_str(), path.c_str());
    ASSERT_TRUE(loop.runNext());
    EXPECT_EQ(seen, "moved;");
    seen.clear();

    write("written");
    while (seen.find("written") == std::string::npos) {
        ASSERT_TRUE(loop.runNext());
    }
}

TEST_F(LinuxFileEventsTest, FollowsTheFileThroughDeletion) {
    const auto source = watch();

    // Many iterations, because the watcher may run between any two of these steps.
    for (int i = 0; i < 500; ++i) {
        const auto word = "word " + std::to_string(i) + ".";
        unlink(path.c_str());
        write(word);
        while (seen.find(word) == std::string::npos) {
            ASSERT_TRUE(loop.runNext());
        }
    }
}

TEST_F(LinuxFileEventsTest, WaitsForAMissingFile) {
    unlink(path.c_str());
    const auto source = watch();
    ASSERT_NE(source, nullptr);

    write("late");

    while (seen.find("late") == std::string::npos) {
        ASSERT_TRUE(loop.runNext());
    }
}

TEST_F(LinuxFileEventsTest, CreatesTheFileAgainWhenItIsDeleted) {
    const auto source = watch();

    for (int time = 0; time < 3; ++time) {
        const std::string word = "word " + std::to_string(time);
        unlink(path.c_str());
        while (access(path.c_str(), F_OK) != 0) {
            ASSERT_TRUE(loop.runNext());
        }
        EXPECT_EQ(modeOf(path), 0600u);
        // A shell with this mask would create a file that others may write to.
        umask(002);
        write(word);
        while (seen.find(word) == std::string::npos) {
            ASSERT_TRUE(loop.runNext());
        }
    }
}

TEST_F(LinuxFileEventsTest, CreatesTheFileWhenWhatHadTakenItsNameIsGone) {
    unlink(path.c_str());
    mkdir(path.c_str(), 0700);
    const auto source = watch();

    rmdir(path.c_str());
    while (access(path.c_str(), F_OK) != 0) {
        ASSERT_TRUE(loop.runNext());
    }

    EXPECT_EQ(modeOf(path), 0600u);
    write("word");
    while (seen.find("word") == std::string::npos) {
        ASSERT_TRUE(loop.runNext());
    }
}

TEST_F(LinuxFileEventsTest, CreatesTheFileHoweverBrieflyItsNameWasTaken) {
    const auto source = watch();

    // The name is often free again before the watch has found it taken.
    for (int time = 0; time < 2000; ++time) {
        unlink(path.c_str());
        if (mkdir(path.c_str(), 0700) == 0) {
            rmdir(path.c_str());
        }
        while (access(path.c_str(), F_OK) != 0) {
            ASSERT_TRUE(loop.runNext()) << time;
        }
    }
}

TEST_F(LinuxFileEventsTest, CreatesAMissingFileWhenTheWatchBegins) {
    unlink(path.c_str());

    const auto source = watch();

    EXPECT_EQ(modeOf(path), 0600u);
}

TEST_F(LinuxFileEventsTest, CoalescesAThousandWritesIntoOneCallThatSeesTheLastWord) {
    const auto source = watch();

    for (int i = 0; i < 1000; ++i) {
        write("word " + std::to_string(i));
    }

    ASSERT_TRUE(loop.runNext());
    EXPECT_EQ(seen, "word 999;");
    EXPECT_LE(loop.queued(), 1U) << "only events after the first call may queue another one";
}

TEST_F(LinuxFileEventsTest, ACancelledWatchMakesNoCalls) {
    auto source = watch();
    write("popover");

    source.reset();

    while (loop.runNext(std::chrono::milliseconds(0))) {
    }
    EXPECT_EQ(seen, "");
}

TEST_F(LinuxFileEventsTest, TruncatesTheFile) {
    write("word");

    events.truncate(path);

    EXPECT_EQ(events.read(path), "");
}

TEST_F(LinuxFileEventsTest, CannotWatchInAMissingDirectory) {
    const auto nowhere = directory / "none/command";

    events.createIfMissing(nowhere);

    EXPECT_EQ(events.watchWrites(nowhere, [] {}), nullptr);
    EXPECT_EQ(events.read(nowhere), std::nullopt);
}

}  // namespace
}  // namespace kestro
