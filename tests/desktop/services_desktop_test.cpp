#include "tests/desktop/menu_fixture.h"
#include "tests/platform/desktop/lock_pipe.h"
#include "tests/support/fake_service.h"

#include <QDBusConnectionInterface>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <mutex>
#include <string>

namespace kestro {
namespace {

using test::FakeService;
using test::LockPipe;
using Bus = DesktopSession::Bus;

/// A service that keeps the session awake, and the calls it expects.
struct AwakeService {
    const char* name;
    Bus bus;
    const char* acquire;
    const char* release;  ///< nullptr: the lock is a descriptor
};

constexpr AwakeService gnome{"org.gnome.SessionManager", Bus::session,
                             R"(Inhibit("Kestro", 0u, "Kestro Keep-Awake Active", 12u))", "Uninhibit(7u)"};
constexpr AwakeService kde{"org.kde.Solid.PowerManagement.PolicyAgent", Bus::session,
                           R"(AddInhibition(4u, "Kestro", "Kestro Keep-Awake Active"))", "ReleaseInhibition(7u)"};
constexpr AwakeService freedesktop{"org.freedesktop.PowerManagement", Bus::session,
                                   R"(Inhibit("Kestro", "Kestro Keep-Awake Active"))", "UnInhibit(7u)"};
constexpr AwakeService screenSaver{"org.freedesktop.ScreenSaver", Bus::session,
                                   R"(Inhibit("Kestro", "Kestro Keep-Awake Active"))", "UnInhibit(7u)"};
constexpr AwakeService logind{"org.freedesktop.login1", Bus::system,
                              R"(Inhibit("idle", "Kestro", "Kestro Keep-Awake Active", "block"))", nullptr};

/// One of these services on its bus: it grants every request and remembers who holds the lock.
class GrantingService {
public:
    GrantingService(DesktopSession& session, const AwakeService& service) : service_(service) {
        const auto answer = [this](const QDBusMessage& call) { return grant(call); };
        fake_ = std::make_unique<FakeService>(
            session.connect(service.bus), QString::fromUtf8(service.name),
            FakeService::Answers{{QStringLiteral("Inhibit"), answer}, {QStringLiteral("AddInhibition"), answer}});
    }

    FakeService& fake() { return *fake_; }

    std::ptrdiff_t count(const std::string& call) const {
        const auto calls = fake_->calls();
        return std::ranges::count(calls, call);
    }

    bool isAcquired(std::ptrdiff_t times = 1) const {
        return waitUntil([&] { return count(service_.acquire) == times; });
    }

    bool isReleased(std::ptrdiff_t times = 1) {
        if (service_.release == nullptr) {
            pipe_.closeWriteEnd();
            return waitUntil([&] { return !pipe_.isHeldBySomebody(); });
        }
        return waitUntil([&] { return count(service_.release) == times; });
    }

    /// Whether the last caller is still on the bus; a service drops its locks when it is not.
    bool isHolderThere() const {
        const std::lock_guard lock(mutex_);
        return fake_->connection().interface()->isServiceRegistered(holder_);
    }

private:
    QDBusMessage grant(const QDBusMessage& call) {
        const std::lock_guard lock(mutex_);
        holder_ = call.service();
        if (service_.release == nullptr) {
            return call.createReply(QVariant::fromValue(pipe_.writeEnd()));
        }
        return call.createReply(7U);
    }

    const AwakeService& service_;
    LockPipe pipe_;
    mutable std::mutex mutex_;
    QString holder_;
    std::unique_ptr<FakeService> fake_;  // last: its thread uses the others
};

using ServicesOnTheDesktop = MenuFixture;

TEST_F(ServicesOnTheDesktop, KeepAwakeUsesEachServiceAndAcquiresAgainWhenItReturns) {
    launch();

    for (const AwakeService* service : {&gnome, &kde, &freedesktop, &screenSaver, &logind}) {
        SCOPED_TRACE(service->name);
        GrantingService granting(session, *service);

        choose(activate);
        EXPECT_TRUE(granting.isAcquired());
        EXPECT_TRUE(offers(deactivate));

        granting.fake().vanish();
        granting.fake().appear();
        EXPECT_TRUE(granting.isAcquired(2));
        EXPECT_TRUE(offers(deactivate));

        choose(deactivate);
        EXPECT_TRUE(offers(activate));
        // The first lock was released when the name was given up, since its connection lived on.
        EXPECT_TRUE(granting.isReleased(service->release == nullptr ? 1 : 2));
        EXPECT_TRUE(granting.isHolderThere());
    }
}

TEST_F(ServicesOnTheDesktop, KeepAwakeForTheSystemStaysOffWithoutAnyService) {
    launch();
    choose(systemOnly, keepAwakeItem);

    choose(activate);

    EXPECT_TRUE(offers(activate));
    EXPECT_FALSE(entry(deactivate, mainItem));
}

TEST_F(ServicesOnTheDesktop, KeepAwakeAsksAgainForTheSystemAlone) {
    session.writePreferences(R"({"kestro.showDedicatedFanItem": true})");
    launch();
    {
        GrantingService granting(session, gnome);
        choose(QStringLiteral("15 Minutes"), keepAwakeItem);
        ASSERT_TRUE(granting.isAcquired());
        EXPECT_TRUE(waitUntil(
            [&] { return client.label(client.waitForItem(keepAwakeItem)).trimmed() == QStringLiteral("14m"); }));
        session.screenshot(QStringLiteral("mate-panel-three-items"));

        choose(systemOnly, keepAwakeItem);

        EXPECT_TRUE(granting.isReleased());
        EXPECT_TRUE(waitUntil(
            [&] { return granting.count(R"(Inhibit("Kestro", 0u, "Kestro Keep-Awake Active", 4u))") == 1; }));
    }

    // The session manager has gone: the remaining service is asked instead.
    const GrantingService system(session, logind);

    EXPECT_TRUE(waitUntil(
        [&] { return system.count(R"(Inhibit("sleep", "Kestro", "Kestro Keep-Awake Active", "block"))") == 1; }));
    EXPECT_FALSE(entry(activate, mainItem));
}

TEST_F(ServicesOnTheDesktop, KeepAwakeEndsWithTheProcessHoweverItEnds) {
    GrantingService manager(session, gnome);
    launch();
    choose(activate);
    ASSERT_TRUE(manager.isAcquired());
    // Kestro asks this once it has received the grant.
    ASSERT_TRUE(waitUntil([&] { return manager.count("IsInhibited(12u)") == 1; }));
    expectEndBy(SIGTERM);
    EXPECT_EQ(kestro->exitCode(), 0);
    EXPECT_TRUE(manager.isReleased());
    EXPECT_TRUE(waitUntil([&] { return !manager.isHolderThere(); }));

    launch();
    choose(activate);
    ASSERT_TRUE(manager.isAcquired(2));
    EXPECT_TRUE(manager.isHolderThere());
    expectEndBy(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return !manager.isHolderThere(); }));

    manager.fake().vanish();
    GrantingService system(session, logind);
    launch();
    choose(activate);
    ASSERT_TRUE(system.isAcquired());
    expectEndBy(SIGKILL);
    EXPECT_TRUE(system.isReleased());
}

const QString low = QStringLiteral("Low Power");
const QString balanced = QStringLiteral("Balanced (Automatic)");
const QString high = QStringLiteral("High Power");

/// A power-profiles daemon under one of its names.
class ProfilesDaemon {
public:
    ProfilesDaemon(DesktopSession& session, const QString& name)
        : fake_(session.connect(Bus::system), name,
                {{QStringLiteral("GetAll"), [this](const QDBusMessage& call) { return get(call); }},
                 {QStringLiteral("Set"), [this](const QDBusMessage& call) { return set(call); }}}) {}

    /// Accepts every request from now on, and reverts it at once.
    void revert() {
        const std::lock_guard lock(mutex_);
        reverts_ = true;
    }

    QStringList wishes() const {
        const std::lock_guard lock(mutex_);
        return wishes_;
    }

    bool isReadAfterTheLastWish() const {
        const std::lock_guard lock(mutex_);
        return reads_ > readsBeforeWish_;
    }

private:
    QDBusMessage get(const QDBusMessage& call) {
        const std::lock_guard lock(mutex_);
        ++reads_;
        return call.createReply(QVariantMap{{QStringLiteral("ActiveProfile"), active_}});
    }

    QDBusMessage set(const QDBusMessage& call) {
        const std::lock_guard lock(mutex_);
        wishes_.append(call.arguments().at(2).value<QDBusVariant>().variant().toString());
        active_ = reverts_ ? active_ : wishes_.last();
        readsBeforeWish_ = reads_;
        return call.createReply();
    }

    mutable std::mutex mutex_;
    QString active_ = QStringLiteral("power-saver");
    QStringList wishes_;
    bool reverts_ = false;
    int reads_ = 0;
    int readsBeforeWish_ = 0;
    FakeService fake_;  // last: its thread uses the others
};

TEST_F(ServicesOnTheDesktop, ThePowerModeFollowsTheDaemonUnderEitherName) {
    launch();

    for (const char* name : {"org.freedesktop.UPower.PowerProfiles", "net.hadess.PowerProfiles"}) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(checks(balanced));
        ProfilesDaemon daemon(session, QString::fromUtf8(name));
        EXPECT_TRUE(checks(low));

        choose(high);
        EXPECT_TRUE(checks(high));
        EXPECT_EQ(daemon.wishes(), QStringList{QStringLiteral("performance")});

        daemon.revert();
        choose(balanced);
        EXPECT_TRUE(waitUntil([&] { return daemon.wishes().size() == 2 && daemon.isReadAfterTheLastWish(); }));
        EXPECT_TRUE(checks(high));
        EXPECT_FALSE(entry(balanced, mainItem)->isChecked());
    }
    EXPECT_TRUE(checks(balanced));

    // Last, because a request without a daemon would still reach one that starts in time.
    choose(high);
    EXPECT_TRUE(checks(balanced));
}

TEST_F(ServicesOnTheDesktop, ThePowerModeIsSwitchedInAnIndependentDaemon) {
    const QString name = QStringLiteral("net.hadess.PowerProfiles");
    session.start(QStringLiteral("/usr/bin/python3"),
                  {QStringLiteral("-m"), QStringLiteral("dbusmock"), QStringLiteral("--template"),
                   QStringLiteral("power_profiles_daemon")});
    QDBusConnection bus = session.connect(Bus::system);
    const auto active = [&] {
        auto question = QDBusMessage::createMethodCall(name, QStringLiteral("/net/hadess/PowerProfiles"),
                                                       QStringLiteral("org.freedesktop.DBus.Properties"),
                                                       QStringLiteral("Get"));
        question << name << QStringLiteral("ActiveProfile");
        const auto arguments = bus.call(question).arguments();
        return arguments.isEmpty() ? QString() : arguments.first().value<QDBusVariant>().variant().toString();
    };
    ASSERT_TRUE(waitUntil([&] { return active() == QStringLiteral("balanced"); }));
    launch();

    choose(low);

    EXPECT_TRUE(checks(low));
    EXPECT_EQ(active(), QStringLiteral("power-saver"));
}

}  // namespace
}  // namespace kestro
