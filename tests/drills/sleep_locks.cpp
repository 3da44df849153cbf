#include "tests/drills/sleep_locks.h"

#include <QDBusConnectionInterface>
#include <QDBusUnixFileDescriptor>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>

namespace kestro::drills {

namespace {

using test::FakeService;

constexpr auto patience = std::chrono::seconds(20);

bool isClosedAtTheOtherEnd(int pipe) {
    pollfd look{pipe, POLLIN, 0};
    return ::poll(&look, 1, 0) == 1;
}

}  // namespace

SleepLocks::SleepLocks(DesktopSession& session) {
    sessionManager_ = std::make_unique<FakeService>(
        session.connect(DesktopSession::Bus::session), QStringLiteral("org.gnome.SessionManager"),
        FakeService::Answers{
            {QStringLiteral("Inhibit"), [this](const QDBusMessage& call) { return grantCookie(call); }}});
    loginManager_ = std::make_unique<FakeService>(
        session.connect(DesktopSession::Bus::system), QStringLiteral("org.freedesktop.login1"),
        FakeService::Answers{
            {QStringLiteral("Inhibit"), [this](const QDBusMessage& call) { return grantDescriptor(call); }}});
}

SleepLocks::~SleepLocks() {
    sessionManager_.reset();
    loginManager_.reset();
    for (const int pipe : pipes_) {
        ::close(pipe);
    }
}

int SleepLocks::granted() const {
    const std::lock_guard lock(mutex_);
    return granted_;
}

bool SleepLocks::areReleased() {
    return waitUntil([this] { return isReleasedNow(); }, patience);
}

QDBusMessage SleepLocks::grantCookie(const QDBusMessage& call) {
    const std::lock_guard lock(mutex_);
    holders_.push_back(call.service());
    return call.createReply(static_cast<uint>(++granted_));
}

QDBusMessage SleepLocks::grantDescriptor(const QDBusMessage& call) {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return call.createErrorReply(QDBusError::LimitsExceeded, QStringLiteral("no pipe"));
    }
    const QDBusMessage reply = call.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(ends[1])));
    ::close(ends[1]);  // the message has its own
    const std::lock_guard lock(mutex_);
    pipes_.push_back(ends[0]);
    ++granted_;
    return reply;
}

bool SleepLocks::isReleasedNow() {
    const std::lock_guard lock(mutex_);
    const auto* const bus = sessionManager_->connection().interface();
    std::erase_if(holders_, [bus](const QString& holder) { return !bus->isServiceRegistered(holder); });
    std::erase_if(pipes_, [](int pipe) { return isClosedAtTheOtherEnd(pipe) && ::close(pipe) == 0; });
    return holders_.empty() && pipes_.empty();
}

}  // namespace kestro::drills
