#include "tests/platform/desktop/desktop_power_assertions_fixture.h"

#include <QDBusArgument>
#include <QDBusMetaType>

namespace kestro::test {

/// An entry of logind's ListInhibitors (org.freedesktop.login1(5)).
struct ListedLock {
    QString what;
    QString who;
    QString why;
    QString mode;
    uint user = 0;
    uint process = 0;
};

static QDBusArgument& operator<<(QDBusArgument& argument, const ListedLock& lock) {
    argument.beginStructure();
    argument << lock.what << lock.who << lock.why << lock.mode << lock.user << lock.process;
    argument.endStructure();
    return argument;
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, ListedLock& lock) {
    argument.beginStructure();
    argument >> lock.what >> lock.who >> lock.why >> lock.mode >> lock.user >> lock.process;
    argument.endStructure();
    return argument;
}

}  // namespace kestro::test

Q_DECLARE_METATYPE(kestro::test::ListedLock)

namespace kestro {
namespace {

using namespace test;

struct LogindListTest : DesktopPowerAssertionsTest {
    LogindListTest() {
        qDBusRegisterMetaType<ListedLock>();
        qDBusRegisterMetaType<QList<ListedLock>>();
    }

    std::unique_ptr<FakeService> logindListing(const QList<ListedLock>& locks) {
        auto logind = service(logindSleep);
        logind->answer(QStringLiteral("ListInhibitors"),
                       [locks](const QDBusMessage& call) { return call.createReply(QVariant::fromValue(locks)); });
        return logind;
    }

    const QString name = QStringLiteral("Kestro");
    const QString reason = QString::fromLatin1(title);
    const ListedLock foreign{QStringLiteral("sleep"), QStringLiteral("UPower"), reason, QStringLiteral("delay")};
    const ListedLock ours{QStringLiteral("sleep"), name, reason, QStringLiteral("block"), 1000, 4711};
};

TEST_F(LogindListTest, ALockInTheListIsHeld) {
    const auto logind = logindListing({foreign, ours});

    EXPECT_TRUE(create(systemOnly).has_value());
}

TEST_F(LogindListTest, ALockThatIsNotInTheListIsNotHeld) {
    ListedLock idle = ours;
    idle.what = QStringLiteral("idle");
    ListedLock delaying = ours;
    delaying.mode = QStringLiteral("delay");
    const auto logind = logindListing({foreign, idle, delaying});

    EXPECT_EQ(create(systemOnly), std::nullopt);
}

TEST_F(LogindListTest, AnEmptyListHoldsNothing) {
    const auto logind = logindListing({});

    EXPECT_EQ(create(systemOnly), std::nullopt);
}

}  // namespace
}  // namespace kestro
