#include "platform/posix/descriptor.h"
#include "tests/desktop/shell_fixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTemporaryFile>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace kestro {
namespace {

/// The shipped program's command file, owned by the user who created it first.
constexpr auto sharedFile = "/tmp/.kestro_cmd";

/// Whether a Kestro of this user, which would also obey the commands in the file, is running on this machine.
bool isKestroRunning() {
    const QStringList processes = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    return std::ranges::any_of(processes, [](const QString& process) {
        QString executable = QFile::symLinkTarget(QStringLiteral("/proc/") + process + QStringLiteral("/exe"));
        return executable.remove(QStringLiteral(" (deleted)")).endsWith(QStringLiteral("/kestro"));
    });
}

/// Why the shared file cannot be used now; empty if it can.
std::string obstacleToTheSharedFile() {
    struct stat found {};
    if (::lstat(sharedFile, &found) == 0 &&
        (!S_ISREG(found.st_mode) || found.st_uid != ::geteuid() || (found.st_mode & (S_IWGRP | S_IWOTH)) != 0)) {
        return "this user does not own it alone";
    }
    return isKestroRunning() ? "a Kestro listens to it" : "";
}

constexpr uid_t nobody = 65534;

/// Root may, unless it lacks the capability or its user namespace has no other user.
bool canGiveFilesAway() {
    QTemporaryFile file;
    return geteuid() == 0 && file.open() && ::fchown(file.handle(), nobody, nobody) == 0;
}

struct CommandFileOnTheDesktop : ShellFixture {
    /// Atomically replaces the command file by a file with that content.
    void place(const QByteArray& content, mode_t mode = S_IRUSR | S_IWUSR,
               const std::function<void(const QString&)>& change = {}) const {
        const QString other = session.path(QStringLiteral("runtime/other"));
        QFile file(other);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        ASSERT_EQ(::chmod(QFile::encodeName(other).constData(), mode), 0);
        if (change) {
            change(other);
        }
        ASSERT_EQ(::rename(QFile::encodeName(other).constData(), path().constData()), 0);
    }

    /// The channel works: a command in a new file is obeyed, and no earlier one has shown the dashboard.
    void expectTheNextWordIsObeyed() {
        remove();
        place("settings");
        EXPECT_TRUE(appears(settings));
        EXPECT_FALSE(frame(dashboard));
        EXPECT_EQ(kestro->state(), QProcess::Running);
        session.key(QStringLiteral("ctrl+w"));
        EXPECT_TRUE(disappears(settings));
    }

    void remove() const {
        if (QFileInfo(commandFile()).isDir()) {
            ASSERT_TRUE(QDir().rmdir(commandFile()));
        } else {
            ::unlink(path().constData());
        }
    }

    /// Puts something else in the place of the command file, which Kestro creates again as soon as it is gone.
    bool takesTheName(const std::function<bool()>& create) const {
        return waitUntil([&] {
            remove();
            return create();
        });
    }

    bool saves(const char* text) const {
        return waitUntil([&] { return preferences().contains(QString::fromUtf8(text)); });
    }

    QByteArray path() const { return QFile::encodeName(commandFile()); }
};

TEST_F(CommandFileOnTheDesktop, IsPrivateToTheUserAndAcceptsCommandsThatChangePreferences) {
    launch();
    const QFileInfo file(commandFile());
    EXPECT_EQ(file.permissions() & ~(QFile::ReadUser | QFile::WriteUser), QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_EQ(file.size(), 0);

    const struct {
        std::vector<const char*> words;
        std::vector<const char*> saved;
    } cases[] = {
        {{"settings-sensors", "toggle-fan-link"}, {"\"Sensors\"", "\"kestro.isFansLinked\": false"}},
        {{"settings-dashboard", "select-fan-1"}, {"\"Dashboard\"", "\"kestro.selectedFanIndex\": 1"}},
        {{"settings-power", "select-fan-0"}, {"\"Power & Energy\"", "\"kestro.selectedFanIndex\": 0"}},
        {{"settings-keepawake", "preset-quiet"}, {"\"Keep-Awake\"", "\"Custom Curves\""}},
        {{"settings-menubar"}, {"\"Menu Bar\""}},
    };
    for (const auto& [words, saved] : cases) {
        for (const char* word : words) {
            command(QByteArray(word) + '\n');
        }
        for (const char* text : saved) {
            EXPECT_TRUE(saves(text)) << text << " in " << preferences().toStdString();
        }
    }
    EXPECT_TRUE(appears(settings));
}

TEST_F(CommandFileOnTheDesktop, IsInTmpForTheShippedProgram) {
    if (const std::string obstacle = obstacleToTheSharedFile(); !obstacle.empty()) {
        GTEST_SKIP() << sharedFile << " cannot be tested: " << obstacle;
    }
    const bool existedBefore = QFileInfo::exists(QString::fromUtf8(sharedFile));
    launch({}, KestroProgram::shipped);

    const auto cleanUp = qScopeGuard([existedBefore] {
        if (!existedBefore) {
            ::unlink(sharedFile);
        }
    });
    const Descriptor file(::open(sharedFile, O_WRONLY | O_NOFOLLOW | O_CLOEXEC));
    ASSERT_EQ(::write(file.get(), "settings\n", 9), 9);

    EXPECT_TRUE(appears(settings));
    EXPECT_EQ(QFileInfo(QString::fromUtf8(sharedFile)).size(), 0);
    EXPECT_FALSE(QFileInfo::exists(commandFile()));
}

TEST_F(CommandFileOnTheDesktop, IsCreatedAgainWhenItIsRemoved) {
    launch();
    remove();
    ASSERT_TRUE(waitUntil([&] { return QFileInfo::exists(commandFile()); }));

    // As a user's shell does, whose files others of the group may write to.
    session.output(QStringLiteral("sh"),
                   {QStringLiteral("-c"), QStringLiteral("umask 002; echo settings > '%1'").arg(commandFile())});

    EXPECT_TRUE(appears(settings));
}

TEST_F(CommandFileOnTheDesktop, IsReplacedWhenItWasSharedBeforeTheStart) {
    session.output(QStringLiteral("sh"),
                   {QStringLiteral("-c"), QStringLiteral("umask 002; echo dashboard > '%1'").arg(commandFile())});
    launch();

    command("settings\n");

    EXPECT_TRUE(appears(settings));
    EXPECT_FALSE(frame(dashboard));
}

TEST_F(CommandFileOnTheDesktop, HasATwinInTheRuntimeDirectoryThatNoOtherUserCanTake) {
    const QString twin = session.path(QStringLiteral("runtime/kestro.cmd"));
    ASSERT_TRUE(QDir().mkdir(commandFile()));
    launch();

    QFile file(twin);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("settings\n");
    file.close();

    EXPECT_TRUE(appears(settings));
    EXPECT_TRUE(waitUntil([&] { return QFileInfo(twin).size() == 0; }));
}

TEST_F(CommandFileOnTheDesktop, MayBeReplacedByAnything) {
    launch();

    ASSERT_TRUE(takesTheName([&] { return ::mkfifo(path().constData(), S_IRUSR | S_IWUSR) == 0; }));
    const int pipe = ::open(path().constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    EXPECT_EQ(::write(pipe, "dashboard", 9), 9);
    expectTheNextWordIsObeyed();
    ::close(pipe);

    QFile target(session.path(QStringLiteral("runtime/target")));
    ASSERT_TRUE(target.open(QIODevice::WriteOnly));
    target.write("dashboard");
    target.close();
    ASSERT_TRUE(takesTheName([&] { return ::symlink("target", path().constData()) == 0; }));
    expectTheNextWordIsObeyed();
    EXPECT_EQ(target.size(), 9);

    ASSERT_TRUE(takesTheName([&] { return QDir().mkdir(commandFile()); }));
    expectTheNextWordIsObeyed();

    place("dashboard", S_IRUSR | S_IWUSR | S_IWOTH);
    expectTheNextWordIsObeyed();

    if (canGiveFilesAway()) {
        place("dashboard", S_IRUSR | S_IWUSR, [](const QString& file) {
            EXPECT_EQ(::chown(QFile::encodeName(file).constData(), nobody, nobody), 0);
        });
        expectTheNextWordIsObeyed();
    }
}

TEST_F(CommandFileOnTheDesktop, MayContainAnything) {
    launch();

    place(QByteArray("dashboard\n").repeated(500'000));
    EXPECT_TRUE(waitUntil([&] { return QFileInfo(commandFile()).size() == 0; }));
    expectTheNextWordIsObeyed();

    const QByteArray binary("dashboard\0\xff\xfe\x80", 13);
    place(binary);
    expectTheNextWordIsObeyed();

    place("  \n\t ");
    expectTheNextWordIsObeyed();
}

}  // namespace
}  // namespace kestro
