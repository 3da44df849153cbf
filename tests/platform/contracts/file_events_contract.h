#pragma once

#include "core/platform/file_events.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace kestro {

/// What every FileEvents promises. A Subject has `port()`; `path()` of a file that does not exist yet in a folder
/// that does; `write(text)` and `remove()`, as another process would; `settle(done)`, which runs the main thread
/// until `done` returns true and nothing more has happened.
template <typename Subject>
class FileEventsContract : public testing::Test {
protected:
    std::unique_ptr<FileEventSource> watch() {
        return subject.port().watchWrites(subject.path(), [this] { ++calls; });
    }

    /// The calls for what has happened up to now, of which there should be `expected`.
    int callsAfterEvents(int expected) {
        subject.settle([this, expected] { return calls >= expected; });
        const int result = calls;
        calls = 0;
        return result;
    }

    Subject subject;
    int calls = 0;
};
TYPED_TEST_SUITE_P(FileEventsContract);

TYPED_TEST_P(FileEventsContract, CreatesAnEmptyFileOnlyIfThereIsNone) {
    FileEvents& events = this->subject.port();

    events.createIfMissing(this->subject.path());
    EXPECT_EQ(events.read(this->subject.path()), "");
    this->subject.write("popover");
    events.createIfMissing(this->subject.path());

    EXPECT_EQ(events.read(this->subject.path()), "popover");
}

TYPED_TEST_P(FileEventsContract, CallsAfterAWrite) {
    this->subject.port().createIfMissing(this->subject.path());
    const auto source = this->watch();
    ASSERT_TRUE(source);

    this->subject.write("popover");

    EXPECT_GE(this->callsAfterEvents(1), 1);
    EXPECT_EQ(this->subject.port().read(this->subject.path()), "popover");
}

TYPED_TEST_P(FileEventsContract, CallsAfterTruncating) {
    this->subject.port().createIfMissing(this->subject.path());
    this->subject.write("popover");
    const auto source = this->watch();

    this->subject.port().truncate(this->subject.path());

    EXPECT_EQ(this->callsAfterEvents(1), 1);
    EXPECT_EQ(this->subject.port().read(this->subject.path()), "");
}

TYPED_TEST_P(FileEventsContract, CallsAfterTheFileWasRecreated) {
    this->subject.port().createIfMissing(this->subject.path());
    const auto source = this->watch();

    this->subject.remove();
    this->subject.write("popover");

    EXPECT_GE(this->callsAfterEvents(1), 1);
    this->subject.write("hide");
    EXPECT_GE(this->callsAfterEvents(1), 1);
}

TYPED_TEST_P(FileEventsContract, DoesNotCallAfterItsEnd) {
    this->subject.port().createIfMissing(this->subject.path());
    auto source = this->watch();

    source.reset();
    this->subject.write("popover");

    EXPECT_EQ(this->callsAfterEvents(0), 0);
}

TYPED_TEST_P(FileEventsContract, ReadsOnlyTheBeginningOfALongFile) {
    this->subject.port().createIfMissing(this->subject.path());
    this->subject.write(std::string(10'000, 'x'));

    EXPECT_EQ(this->subject.port().read(this->subject.path()), std::string(FileEvents::longestRead, 'x'));
}

TYPED_TEST_P(FileEventsContract, HasNothingInAMissingFile) {
    EXPECT_FALSE(this->subject.port().read(this->subject.path()));
    this->subject.port().truncate(this->subject.path());
    EXPECT_FALSE(this->subject.port().read(this->subject.path()));
}

REGISTER_TYPED_TEST_SUITE_P(FileEventsContract, CreatesAnEmptyFileOnlyIfThereIsNone, CallsAfterAWrite,
                            CallsAfterTruncating, CallsAfterTheFileWasRecreated, DoesNotCallAfterItsEnd,
                            ReadsOnlyTheBeginningOfALongFile, HasNothingInAMissingFile);

}  // namespace kestro
