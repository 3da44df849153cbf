#include "platform/linux/kernel/kernel_files.h"

#include "tests/platform/linux/failing_reads.h"
#include "tests/platform/linux/support.h"
#include "tests/support/allocation_counter.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestro {
namespace {

using test::FailingReads;
using test::TemporaryTree;

TEST(PersistentFile, SeesNewContentWithoutReopening) {
    TemporaryTree tree;
    tree.write("/value", "one\n");
    PersistentFile file(tree.root() + "/value");
    ReadBuffer buffer;

    EXPECT_EQ(file.read(buffer), "one\n");
    tree.write("/value", "second\n");
    EXPECT_EQ(file.read(buffer), "second\n");
}

TEST(PersistentFile, ReportsAMissingFileAsGoneAndFindsItWhenItAppears) {
    TemporaryTree tree;
    PersistentFile file(tree.root() + "/value");
    ReadBuffer buffer;

    EXPECT_FALSE(file.read(buffer));
    EXPECT_TRUE(file.isGone());
    tree.write("/value", "7");
    EXPECT_EQ(file.read(buffer), "7");
    EXPECT_FALSE(file.isGone());
}

/// A file that was read once and whose device then disappeared, while another one took its name.
class LeftFile {
public:
    explicit LeftFile(PersistentFile::WhenGone whenGone) : file(tree.root() + "/value", whenGone) {
        tree.write("/value", "first");
        EXPECT_EQ(file.read(buffer), "first");
        tree.rename("/value", "/gone").write("/value", "second");
    }

    TemporaryTree tree;
    ReadBuffer buffer;
    PersistentFile file;
};

TEST(PersistentFile, ReopensAfterItsDeviceIsGone) {
    for (const int errorNumber : {ENODEV, ENOENT, ESTALE}) {
        LeftFile left(PersistentFile::WhenGone::openAgain);
        const FailingReads gone(left.tree.root() + "/gone", errorNumber);

        EXPECT_EQ(left.file.read(left.buffer), "second") << errorNumber;
        EXPECT_FALSE(left.file.isGone());
    }
}

TEST(PersistentFile, StaysGoneIfTheNameMayBelongToAnotherDevice) {
    LeftFile left(PersistentFile::WhenGone::stayGone);
    std::optional<FailingReads> gone(std::in_place, left.tree.root() + "/gone", ENODEV);

    EXPECT_FALSE(left.file.read(left.buffer));
    EXPECT_TRUE(left.file.isGone());
    gone.reset();
    EXPECT_FALSE(left.file.read(left.buffer));
    EXPECT_TRUE(left.file.isGone());
}

TEST(PersistentFile, KeepsAFileThatTemporarilyHasNoReading) {
    for (const auto whenGone : {PersistentFile::WhenGone::openAgain, PersistentFile::WhenGone::stayGone}) {
        LeftFile left(whenGone);
        std::optional<FailingReads> wakingUp(std::in_place, left.tree.root() + "/gone", ENODATA);

        EXPECT_FALSE(left.file.read(left.buffer));
        EXPECT_FALSE(left.file.isGone());
        wakingUp.reset();
        EXPECT_EQ(left.file.read(left.buffer), "first");
    }
}

TEST(PersistentFile, FailsOnceIfTheNewDeviceIsGoneToo) {
    TemporaryTree tree;
    tree.write("/value", "7");
    PersistentFile file(tree.root() + "/value");
    ReadBuffer buffer;
    std::optional<FailingReads> gone(std::in_place, tree.root() + "/value", ENODEV);

    EXPECT_FALSE(file.read(buffer));
    EXPECT_TRUE(file.isGone());
    gone.reset();
    EXPECT_EQ(file.read(buffer), "7");
}

TEST(PersistentFile, CanBeMovedWhileOpen) {
    TemporaryTree tree;
    tree.write("/value", "7");
    PersistentFile first(tree.root() + "/value");
    ReadBuffer buffer;
    ASSERT_TRUE(first.read(buffer));

    PersistentFile second(std::move(first));

    EXPECT_EQ(second.read(buffer), "7");
}

TEST(PersistentFile, DoesNotReadADirectory) {
    TemporaryTree tree;
    PersistentFile file(tree.root());
    ReadBuffer buffer;

    EXPECT_FALSE(file.read(buffer));
    EXPECT_FALSE(file.isGone());
}

TEST(PersistentFile, NeitherBlocksOnAPipeNorFollowsLinksForever) {
    TemporaryTree tree;
    const auto pipe = tree.root() + "/pipe";
    const auto loop = tree.root() + "/loop";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    ASSERT_EQ(::symlink(loop.c_str(), loop.c_str()), 0);
    ReadBuffer buffer;

    EXPECT_FALSE(PersistentFile(pipe).read(buffer));
    EXPECT_FALSE(PersistentFile(loop).read(buffer));
    EXPECT_FALSE(readFile(pipe));
    EXPECT_TRUE(listDirectory(loop).empty());
}

TEST(PersistentFile, TreatsAnEndlessDeviceAsTooLarge) {
    ReadBuffer buffer(10000);

    EXPECT_FALSE(PersistentFile("/dev/zero").read(buffer));
    EXPECT_FALSE(readFile("/dev/zero"));
}

TEST(PersistentFile, AllocatesNothingOnceItsBufferHasGrown) {
    TemporaryTree tree;
    tree.write("/value", std::string(9000, 'x'));
    PersistentFile file(tree.root() + "/value");
    ReadBuffer buffer;
    ASSERT_EQ(file.read(buffer)->size(), 9000U);

    const auto before = test::allocationsOfThisThread();
    const auto text = file.read(buffer);
    const auto after = test::allocationsOfThisThread();

    EXPECT_EQ(text->size(), 9000U);
    EXPECT_EQ(after, before);
}

TEST(ReadBuffer, ReadsWholeFilesOfEverySizeUpToItsLimit) {
    TemporaryTree tree;
    for (const std::size_t size : {0U, 1U, 2047U, 2048U, 4095U, 4096U, 4097U, 8192U, 10000U}) {
        tree.write("/value", std::string(size, 'x'));
        PersistentFile file(tree.root() + "/value");
        ReadBuffer buffer(10001);

        const auto text = file.read(buffer);

        ASSERT_TRUE(text) << size;
        EXPECT_EQ(text->size(), size);
    }
}

TEST(ReadBuffer, ReadsAFileWithLongRecordsToItsEnd) {
    TemporaryTree tree;
    tree.write("/value", std::string(3000, 'x'));
    const test::PiecemealReads pieces(tree.root() + "/value", 900);
    const Descriptor file(::open((tree.root() + "/value").c_str(), O_RDONLY | O_CLOEXEC));
    ReadBuffer buffer;

    EXPECT_EQ(buffer.readAll(file.get())->size(), 900U);
    EXPECT_EQ(buffer.readAll(file.get(), ReadBuffer::Ending::emptyRead)->size(), 3000U);
}

TEST(ReadBuffer, RejectsAFileBeyondItsLimit) {
    TemporaryTree tree;
    tree.write("/value", std::string(10001, 'x'));
    PersistentFile file(tree.root() + "/value");
    ReadBuffer buffer(10000);

    EXPECT_FALSE(file.read(buffer));
    EXPECT_FALSE(file.isGone());
    EXPECT_EQ(file.readBeginning(buffer, 10000)->size(), 10000U);
    EXPECT_FALSE(file.readBeginning(buffer, 10001));
}

TEST(KernelFiles, JoinsPathsUnderAnyRoot) {
    EXPECT_EQ(pathUnder("/", "/proc/stat"), "/proc/stat");
    EXPECT_EQ(pathUnder("", "/proc/stat"), "/proc/stat");
    EXPECT_EQ(pathUnder("/tmp/machine/", "/proc/stat"), "/tmp/machine/proc/stat");
}

TEST(KernelFiles, ListsADirectoryInByteOrderAndAMissingOneAsEmpty) {
    TemporaryTree tree;
    tree.write("/b", "").write("/a10", "").write("/a9", "");

    EXPECT_EQ(listDirectory(tree.root()), (std::vector<std::string>{"a10", "a9", "b"}));
    EXPECT_TRUE(listDirectory(tree.root() + "/none").empty());
}

}  // namespace
}  // namespace kestro
