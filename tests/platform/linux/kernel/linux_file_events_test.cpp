#include "platform/linux/kernel/linux_file_events.h"

#include "tests/platform/linux/kernel/queue_loop.h"
#include "tests/support/temporary_directory.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <string>

namespace kestro {
namespace {

using test::QueueLoop;

class LinuxFileEventsTest : public testing::Test {
protected:
    LinuxFileEventsTest() { events.createIfMissing(path); }
    ~LinuxFileEventsTest() override { umask(inheritedMask_); }

    std::unique_ptr<FileEventSource> watch() {
        return events.watchWrites(path, [this] {
            const auto text = events.read(path);
            // The watch may create an empty file.
            seen += text == "" ? "" : text.value_or("<none>") + ";";
        });
    }

    void write(const std::string& text) { directory.write("command", text); }

    /// Replaces whatever is at the path with a proper file and expects that to be the first thing reported.
    void expectOnlyTheReplacementIsSeen() {
        directory.write("new", "replacement");
        chmod((directory / "new").c_str(), 0600);
        rename((directory / "new").c_str(), path.c_str());
        while (seen.find("replacement") == std::string::npos) {
            ASSERT_TRUE(loop.runNext());
        }
        EXPECT_EQ(seen.find("replacement"), 0u) << seen;
        unlink(path.c_str());
    }

private:
    // Files that others may write to would be rejected.
    const mode_t inheritedMask_ = umask(022);

protected:
    TemporaryDirectory directory;
    const std::string path = directory / "command";
    QueueLoop loop;
    LinuxFileEvents events{loop};
    std::string seen;
};

mode_t modeOf(const std::string& path) {
    struct stat status {};
    stat(path.c_str(), &status);
    return status.st_mode & 07777;
}

off_t fileSize(const std::string& path) {
    struct stat status {};
    stat(path.c_str(), &status);
    return status.st_size;
}

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

TEST_F(LinuxFileEventsTest, ReplacesAFileThatThisUserHasShared) {
    for (const mode_t mode : {0664, 0602, 0666}) {
        SCOPED_TRACE(mode);
        write("theirs");
        chmod(path.c_str(), mode);

        const auto source = watch();

        EXPECT_EQ(modeOf(path), 0600u);
        EXPECT_EQ(events.read(path), "");
        write("mine");
        while (seen.find("mine") == std::string::npos) {
            ASSERT_TRUE(loop.runNext());
        }
        EXPECT_EQ(seen.find("theirs"), std::string::npos);
        seen.clear();
    }
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

TEST_F(LinuxFileEventsTest, RejectsALink) {
    unlink(path.c_str());
    directory.write("target", "secret");
    symlink((directory / "target").c_str(), path.c_str());

    const auto source = watch();

    EXPECT_EQ(events.read(path), std::nullopt);
    events.truncate(path);
    EXPECT_EQ(events.read(directory / "target"), "secret");
    directory.write("target", "more secret");
    expectOnlyTheReplacementIsSeen();
}

TEST_F(LinuxFileEventsTest, RejectsAFileWithASecondHardLink) {
    write("mine");
    link(path.c_str(), (directory / "second").c_str());

    const auto source = watch();

    EXPECT_EQ(events.read(path), std::nullopt);
    events.truncate(path);
    EXPECT_EQ(fileSize(directory / "second"), 4);
    write("theirs");
    expectOnlyTheReplacementIsSeen();
}

TEST_F(LinuxFileEventsTest, RejectsAFifoWithoutBlocking) {
    unlink(path.c_str());
    mkfifo(path.c_str(), 0600);

    const auto source = watch();

    EXPECT_EQ(events.read(path), std::nullopt);
    events.truncate(path);
    expectOnlyTheReplacementIsSeen();
}

TEST_F(LinuxFileEventsTest, RejectsADirectory) {
    unlink(path.c_str());
    mkdir(path.c_str(), 0700);

    const auto source = watch();

    EXPECT_EQ(events.read(path), std::nullopt);
    rmdir(path.c_str());
    expectOnlyTheReplacementIsSeen();
}

TEST_F(LinuxFileEventsTest, RejectsAFileThatOthersMayWriteTo) {
    for (const mode_t mode : {0620, 0602, 0666}) {
        SCOPED_TRACE(mode);
        events.createIfMissing(path);
        write("theirs");
        chmod(path.c_str(), mode);

        EXPECT_EQ(events.read(path), std::nullopt);
        events.truncate(path);
        EXPECT_EQ(fileSize(path), 6);
        unlink(path.c_str());
    }
}

TEST_F(LinuxFileEventsTest, RejectsAFileOfAnotherUser) {
    if (geteuid() != 0) {
        EXPECT_EQ(events.read("/etc/hostname"), std::nullopt);
        return;
    }
    if (chown(path.c_str(), 65534, 65534) != 0) {
        GTEST_SKIP() << "this root cannot give files away";
    }

    const auto source = watch();

    write("theirs");
    EXPECT_EQ(events.read(path), std::nullopt);
    expectOnlyTheReplacementIsSeen();
}

TEST_F(LinuxFileEventsTest, TrustsAFileOnceItsSecondLinkIsGone) {
    link(path.c_str(), (directory / "second").c_str());
    const auto source = watch();

    unlink((directory / "second").c_str());
    chmod(path.c_str(), 0600);
    write("word");

    while (seen.find("word") == std::string::npos) {
        ASSERT_TRUE(loop.runNext());
    }
}

TEST_F(LinuxFileEventsTest, ReadsAtMostFourKibibytesOfAHugeFile) {
    write(std::string(10 << 20, 'x'));

    EXPECT_EQ(events.read(path), std::string(4096, 'x'));
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
