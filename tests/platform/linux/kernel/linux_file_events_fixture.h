#pragma once

#include "platform/linux/kernel/linux_file_events.h"
#include "tests/platform/linux/kernel/queue_loop.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <memory>
#include <string>

namespace kestro {

inline mode_t modeOf(const std::string& path) {
    struct stat status {};
    stat(path.c_str(), &status);
    return status.st_mode & 07777;
}

/// Fixture for a watched file in a temporary directory.
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

private:
    // Files that others may write to would be rejected.
    const mode_t inheritedMask_ = umask(022);

protected:
    TemporaryDirectory directory;
    const std::string path = directory / "command";
    test::QueueLoop loop;
    LinuxFileEvents events{loop};
    std::string seen;
};

}  // namespace kestro
