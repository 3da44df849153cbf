#include "tests/desktop/shell_fixture.h"

#include <QDBusServiceWatcher>

#include <gtest/gtest.h>

#include <csignal>

namespace kestro {
namespace {

class PreferencesOnTheDesktop : public ShellFixture {
protected:
    const QString keepAwakeTab = QStringLiteral("\"Keep-Awake\"");

    bool changeTheTab() {
        notify(QStringLiteral("showSettings"), atTab(QStringLiteral("Keep-Awake")));
        return appears(settings);
    }
};

TEST_F(PreferencesOnTheDesktop, AreLeftAloneByASecondInstance) {
    constexpr auto halfAFile = R"({"kestro.isPinned": tr)";
    launch();
    session.writePreferences(halfAFile);

    const QProcess& second = session.startKestro();

    ASSERT_TRUE(waitUntil([&] { return second.state() == QProcess::NotRunning; }));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(preferences(), QString::fromUtf8(halfAFile));
    EXPECT_FALSE(session.files().contains(QStringLiteral("config/kestro/preferences.json.damaged")));
}

TEST_F(PreferencesOnTheDesktop, AreCompleteWhenANewFirstInstanceStarts) {
    launch();
    const QDBusServiceWatcher watcher(QStringLiteral("kestro.Kestro"), session.bus(),
                                      QDBusServiceWatcher::WatchForUnregistration);
    QString found;
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, [&] { found = preferences(); });
    ASSERT_TRUE(changeTheTab());

    ::kill(static_cast<pid_t>(kestro->processId()), SIGTERM);

    ASSERT_TRUE(ends());
    EXPECT_TRUE(waitUntil([&] { return found.contains(keepAwakeTab); })) << found.toStdString();
}

/// A user whose locale uses two-byte characters as decimal point and thousands separator.
class PreferencesInPashto : public PreferencesOnTheDesktop {
protected:
    void SetUp() override {
        ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
        session.output(QStringLiteral("localedef"),
                       {QStringLiteral("--no-archive"), QStringLiteral("-i"), QStringLiteral("ps_AF"),
                        QStringLiteral("-f"), QStringLiteral("UTF-8"), session.path(name)});
        ASSERT_EQ(session.output(QStringLiteral("env"), variables + QStringList{QStringLiteral("locale"),
                                                                                QStringLiteral("decimal_point")}),
                  "\u066B\n");
    }

    const QString name = QStringLiteral("ps_AF.UTF-8");
    const QStringList variables{QStringLiteral("LC_ALL=") + name,
                                QStringLiteral("LOCPATH=") + session.path(QString())};
};

TEST_F(PreferencesInPashto, PreserveTheirFractions) {
    session.writePreferences(R"({"kestro.rampSmoothingSeconds": 1.5, "other": 0.25})");
    launch(variables);

    ASSERT_TRUE(changeTheTab());

    EXPECT_TRUE(waitUntil([&] { return preferences().contains(keepAwakeTab); }));
    EXPECT_TRUE(preferences().contains(QStringLiteral("\"kestro.rampSmoothingSeconds\": 1.5,")));
    EXPECT_TRUE(preferences().contains(QStringLiteral("\"other\": 0.25,")));
}

}  // namespace
}  // namespace kestro
