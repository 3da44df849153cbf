#pragma once

#include "tests/desktop/desktop_session.h"
#include "tests/support/fake_service.h"

#include <QString>

#include <memory>
#include <mutex>
#include <vector>

namespace kestro::drills {

/// A session manager and a login manager that grant every lock against sleep and remember who holds them.
class SleepLocks {
public:
    explicit SleepLocks(DesktopSession& session);
    ~SleepLocks();
    SleepLocks(const SleepLocks&) = delete;
    SleepLocks& operator=(const SleepLocks&) = delete;

    /// Locks granted so far.
    int granted() const;

    /// Whether every holder has left the bus or closed its descriptor; waits a moment for that.
    bool areReleased();

private:
    QDBusMessage grantCookie(const QDBusMessage& call);
    QDBusMessage grantDescriptor(const QDBusMessage& call);
    bool isReleasedNow();

    mutable std::mutex mutex_;
    int granted_ = 0;
    std::vector<QString> holders_;  // of cookies
    std::vector<int> pipes_;        // ends whose other end is the lock
    std::unique_ptr<test::FakeService> sessionManager_;
    std::unique_ptr<test::FakeService> loginManager_;
};

}  // namespace kestro::drills
