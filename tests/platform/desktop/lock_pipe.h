#pragma once

#include <QDBusUnixFileDescriptor>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <utility>

namespace kestro::test {

/// The write end goes to the holder of a lock; the read end shows when no process holds it any more.
class LockPipe {
public:
    LockPipe() { EXPECT_EQ(::pipe2(ends_, O_CLOEXEC), 0); }
    ~LockPipe() {
        ::close(ends_[0]);
        closeWriteEnd();
    }

    QDBusUnixFileDescriptor writeEnd() const { return QDBusUnixFileDescriptor(ends_[1]); }

    void closeWriteEnd() {
        if (ends_[1] >= 0) {
            ::close(std::exchange(ends_[1], -1));
        }
    }

    bool isHeldBySomebody() const {
        pollfd look{ends_[0], POLLIN, 0};
        return ::poll(&look, 1, 0) == 0;
    }

private:
    int ends_[2] = {-1, -1};
};

}  // namespace kestro::test
