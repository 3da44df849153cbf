#include "platform/posix/bounded_read.h"

#include "platform/posix/descriptor.h"
#include "tests/support/temporary_directory.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <array>

namespace kestro {
namespace {

struct BoundedRead : testing::Test {
    TemporaryDirectory directory;

    Descriptor opened(std::string_view content, int flags = O_RDONLY) const {
        directory.write("file", content);
        return Descriptor(::open((directory / "file").c_str(), flags | O_CLOEXEC));
    }
};

TEST_F(BoundedRead, ReadsAWholeFileShorterThanTheLimit) {
    const auto file = opened("standard");

    EXPECT_EQ(readAtMost(file.get(), 64), "standard");
}

TEST_F(BoundedRead, ReadsAnEmptyFileAsNothing) {
    const auto file = opened("");

    EXPECT_EQ(readAtMost(file.get(), 64), "");
}

TEST_F(BoundedRead, StopsAtTheLimit) {
    const auto file = opened("standard");

    EXPECT_EQ(readAtMost(file.get(), 5), "stand");
}

#ifdef O_DIRECT  // for pipes of packets
TEST_F(BoundedRead, JoinsPartialReads) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC | O_DIRECT), 0);
    const Descriptor reader(ends[0]);
    Descriptor writer(ends[1]);
    // Each write is a separate packet, and a read returns one packet.
    ASSERT_EQ(::write(writer.get(), "stan", 4), 4);
    ASSERT_EQ(::write(writer.get(), "dard", 4), 4);
    writer.close();

    EXPECT_EQ(readAtMost(reader.get(), 64), "standard");
}
#endif

TEST_F(BoundedRead, FailsForAFileThatCannotBeRead) {
    const auto unreadable = opened("standard", O_WRONLY);

    EXPECT_EQ(readAtMost(unreadable.get(), 64), std::nullopt);
    EXPECT_EQ(readAtMost(-1, 64), std::nullopt);
}

}  // namespace
}  // namespace kestro
