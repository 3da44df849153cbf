#include "tests/platform/linux/kernel/linux_file_events_fixture.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <optional>
#include <string>

namespace kestro {
namespace {

/// Files at the path that another user may have made or may write to.
class LinuxFileEventsTrustTest : public LinuxFileEventsTest {
protected:
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
};

off_t fileSize(const std::string& path) {
    struct stat status {};
    stat(path.c_str(), &status);
    return status.st_size;
}

TEST_F(LinuxFileEventsTrustTest, ReplacesAFileThatThisUserHasShared) {
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

TEST_F(LinuxFileEventsTrustTest, RejectsALink) {
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

TEST_F(LinuxFileEventsTrustTest, RejectsAFileWithASecondHardLink) {
    write("mine");
    link(path.c_str(), (directory / "second").c_str());

    const auto source = watch();

    EXPECT_EQ(events.read(path), std::nullopt);
    events.truncate(path);
    EXPECT_EQ(fileSize(directory / "second"), 4);
    write("theirs");
    expectOnlyTheReplacementIsSeen();
}

TEST_F(LinuxFileEventsTrustTest, RejectsAFifoWithoutBlocking) {
    unlink(path.c_str());
    mkfifo(path.c_str(), 0600);

    const auto source = watch();

    EXPECT_EQ(events.read(path), std::nullopt);
    events.truncate(path);
    expectOnlyTheReplacementIsSeen();
}

TEST_F(LinuxFileEventsTrustTest, RejectsADirectory) {
    unlink(path.c_str());
    mkdir(path.c_str(), 0700);

    const auto source = watch();

    EXPECT_EQ(events.read(path), std::nullopt);
    rmdir(path.c_str());
    expectOnlyTheReplacementIsSeen();
}

TEST_F(LinuxFileEventsTrustTest, RejectsAFileThatOthersMayWriteTo) {
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

TEST_F(LinuxFileEventsTrustTest, RejectsAFileOfAnotherUser) {
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

TEST_F(LinuxFileEventsTrustTest, TrustsAFileOnceItsSecondLinkIsGone) {
    link(path.c_str(), (directory / "second").c_str());
    const auto source = watch();

    unlink((directory / "second").c_str());
    chmod(path.c_str(), 0600);
    write("word");

    while (seen.find("word") == std::string::npos) {
        ASSERT_TRUE(loop.runNext());
    }
}

TEST_F(LinuxFileEventsTrustTest, ReadsAtMostFourKibibytesOfAHugeFile) {
    write(std::string(10 << 20, 'x'));

    EXPECT_EQ(events.read(path), std::string(4096, 'x'));
}

}  // namespace
}  // namespace kestro
