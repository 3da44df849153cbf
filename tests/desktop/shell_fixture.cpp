#include "tests/desktop/shell_fixture.h"

#include "tests/desktop/status_item_client.h"

#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <QVariantMap>

#include <unistd.h>

namespace kestro {

namespace {

/// Runs its second argument with its first one, a folder, in the place of /tmp, where the command file lies that
/// other programs of this machine watch as well. The session's folder and the display are found in it under the
/// same names.
constexpr auto withItsOwnTmp = R"sh(
cd "$0" && mkdir -p old && mount --bind /tmp old || exit 1
ln -sfn "old/$(basename "$(dirname "$0")")" old/.X11-unix .
mount --rbind "$0" /tmp && )sh";

/// A user who is not root needs a namespace to mount in, and another one to be himself again.
QStringList privately(const QString& tmp) {
    const QString program = QStringLiteral(KESTRO_BINARY_DIR "/kestro");
    const QString script = QString::fromUtf8(withItsOwnTmp);
    if (geteuid() == 0) {
        return {QStringLiteral("--mount"),
                QStringLiteral("sh"),
                QStringLiteral("-c"),
                script + QStringLiteral("exec \"$1\""),
                tmp,
                program};
    }
    const QString asMyself =
        QStringLiteral("exec unshare --user --map-user=%1 --map-group=%2 \"$1\"").arg(geteuid()).arg(getegid());
    return {QStringLiteral("--map-root-user"),
            QStringLiteral("--mount"),
            QStringLiteral("sh"),
            QStringLiteral("-c"),
            script + asMyself,
            tmp,
            program};
}

bool canMountPrivately() {
    const QStringList user = geteuid() == 0 ? QStringList() : QStringList{QStringLiteral("--map-root-user")};
    static const bool can =
        QProcess::execute(QStringLiteral("unshare"),
                          user + QStringList{QStringLiteral("--mount"), QStringLiteral("true")}) == 0;
    return can;
}

}  // namespace

ShellFixture::ShellFixture(DesktopPanel panel) : session(panel), panel_(panel) {
    QDir().mkpath(session.path(QStringLiteral("tmp")));
}

void ShellFixture::launch() {
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    ASSERT_TRUE(canMountPrivately()) << "these tests give the program a /tmp of its own, which takes root with "
                                        "CAP_SYS_ADMIN, or user namespaces";
    kestro = &session.start(QStringLiteral("unshare"), privately(session.path(QStringLiteral("tmp"))));
    if (panel_ == DesktopPanel::none) {
        ASSERT_TRUE(waitUntil([&] { return session.strip().has_value(); }));
    } else {
        const StatusItemClient client(session);
        // A panel that is starting may lose its items once, and gets new ones then.
        ASSERT_TRUE(waitUntil([&] { return client.label(client.waitForItem()).contains(QLatin1Char('%')); }));
    }
}

void ShellFixture::command(const QByteArray& word) {
    QFile file(commandFile());
    ASSERT_TRUE(waitUntil([&] { return file.size() == 0; })) << "the word before is not consumed";
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(word);
}

void ShellFixture::finishCommands() {
    // A word is consumed before it is performed, but after those before it were.
    command("no command");
    ASSERT_TRUE(waitUntil([&] { return QFile(commandFile()).size() == 0; }));
}

void ShellFixture::unmap(const DesktopWindow& window) const {
    session.output(QStringLiteral("xdotool"), {QStringLiteral("windowunmap"), window.identifier});
}

void ShellFixture::notify(const QString& member, const QVariantList& arguments) {
    QDBusMessage signal =
        QDBusMessage::createSignal(QStringLiteral("/kestro/notify"), QStringLiteral("kestro.notify"), member);
    signal.setArguments(arguments);
    session.bus().send(signal);
}

QVariantList ShellFixture::atTab(const QVariant& tab) {
    return {QVariantMap{{QStringLiteral("tab"), tab}}};
}

std::optional<DesktopWindow> ShellFixture::window(const QString& title) const {
    for (const DesktopWindow& window : session.windows()) {
        if (window.title == title) {
            return window;
        }
    }
    return std::nullopt;
}

std::optional<QRect> ShellFixture::frame(const QString& title) const {
    const auto found = window(title);
    return found ? std::optional(found->frame) : std::nullopt;
}

bool ShellFixture::appears(const QString& title) const {
    return waitUntil([&] { return window(title).has_value(); });
}

bool ShellFixture::disappears(const QString& title) const {
    return waitUntil([&] { return !window(title).has_value(); });
}

QRect ShellFixture::settledFrame(const QString& title, const QRect& expected) const {
    waitUntil([&] { return frame(title) == expected; }, std::chrono::seconds(5));
    return frame(title).value_or(QRect());
}

bool ShellFixture::hasState(const QString& title, const QByteArray& state) const {
    const auto found = window(title);
    return found &&
           session.windowProperty(*found, QStringLiteral("_NET_WM_STATE")).contains(QString::fromLatin1(state));
}

void ShellFixture::doubleClick(QPoint position) const {
    session.moveTo(position);
    session.output(QStringLiteral("xdotool"),
                   {QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
                    QStringLiteral("--delay"), QStringLiteral("60"), QStringLiteral("1")});
}

void ShellFixture::drag(QPoint from, QPoint to) const {
    const auto xdotool = [this](const QStringList& arguments) {
        session.output(QStringLiteral("xdotool"), arguments);
        // The window manager takes the pointer over between two steps.
        QThread::msleep(150);
    };
    session.moveTo(from);
    xdotool({QStringLiteral("mousedown"), QStringLiteral("1")});
    for (const QPoint& step : {from + (to - from) / 2, to}) {
        xdotool({QStringLiteral("mousemove"), QString::number(step.x()), QString::number(step.y())});
    }
    xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
}

bool ShellFixture::ends() {
    return waitUntil([&] { return kestro->state() == QProcess::NotRunning; });
}

QString ShellFixture::preferences() const {
    QFile file(session.path(QStringLiteral("config/kestro/preferences.json")));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

}  // namespace kestro
