#include "tests/desktop/sway.h"

#include "tests/support/event_waiting.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QStandardPaths>

#include <unistd.h>

namespace kestro {

namespace {

constexpr int patience = 20'000;
constexpr uid_t nobody = 65534;

void collect(const QJsonObject& node, std::vector<Sway::Window>& found) {
    if (node.contains(QStringLiteral("pid")) && node.value(QStringLiteral("visible")).toBool()) {
        const QJsonObject rect = node.value(QStringLiteral("rect")).toObject();
        const auto edge = [&rect](const char* name) { return rect.value(QLatin1StringView(name)).toInt(); };
        found.push_back({node.value(QStringLiteral("pid")).toInteger(),
                         node.value(QStringLiteral("name")).toString(),
                         QRect(edge("x"), edge("y"), edge("width"), edge("height"))});
    }
    for (const char* children : {"nodes", "floating_nodes"}) {
        for (const QJsonValue& child : node.value(QLatin1StringView(children)).toArray()) {
            collect(child.toObject(), found);
        }
    }
}

}  // namespace

QString Sway::missing() {
    for (const char* program : {"sway", "swaymsg", "setpriv", "waybar", "grim", "Xwayland", "xhost"}) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(program)).isEmpty()) {
            return QString::fromLatin1(program);
        }
    }
    if (!QFile::permissions(QStringLiteral("/dev/shm")).testFlag(QFile::WriteOther)) {
        return QStringLiteral("shared memory for every user");
    }
    const QDir platforms(QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
    const bool isOffered = !platforms.entryList({QStringLiteral("libqwayland*")}).isEmpty();
    return isOffered ? QString() : QStringLiteral("Qt's platform plugin for Wayland");
}

Sway::Sway(QSize screen, QProcessEnvironment environment) {
    const bool isRoot = ::geteuid() == 0;
    if (isRoot && ::chown(folder_.path().toLocal8Bit().constData(), nobody, nobody) != 0) {
        failure_ = QStringLiteral("no folder for sway");
        return;
    }
    environment.insert(QStringLiteral("HOME"), folder_.path());
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder_.path());
    environment.insert(QStringLiteral("WLR_BACKENDS"), QStringLiteral("headless"));
    environment.insert(QStringLiteral("WLR_LIBINPUT_NO_DEVICES"), QStringLiteral("1"));
    environment.insert(QStringLiteral("WLR_RENDERER"), QStringLiteral("pixman"));
    process_.setProcessEnvironment(environment);
    process_.setWorkingDirectory(QStringLiteral("/"));
    QStringList command{QStringLiteral("sway"), QStringLiteral("--config"), QStringLiteral("/dev/null")};
    if (isRoot) {
        command = QStringList{QStringLiteral("setpriv"), QStringLiteral("--reuid=%1").arg(nobody),
                              QStringLiteral("--regid=%1").arg(nobody), QStringLiteral("--clear-groups")} +
                  command;
    }
    process_.start(command.first(), command.mid(1));
    const QStringList mode{
        QStringLiteral("--"),
        QStringLiteral("output HEADLESS-1 mode --custom %1x%2").arg(screen.width()).arg(screen.height())};
    const bool isReady = waitUntil([&] {
        const bool hasSockets =
            !socket(QStringLiteral("sway-ipc.*.sock")).isEmpty() && !socket(QStringLiteral("wayland-?")).isEmpty();
        return hasSockets && message(mode).contains("true");
    });
    if (!isReady) {
        failure_ = QStringLiteral("sway does not start\n") + QString::fromUtf8(process_.readAllStandardError());
    }
}

Sway::~Sway() {
    process_.terminate();
    if (!process_.waitForFinished(patience)) {
        process_.kill();
        process_.waitForFinished(patience);
    }
}

QProcessEnvironment Sway::clientVariables() const {
    QProcessEnvironment variables;
    variables.insert(QStringLiteral("WAYLAND_DISPLAY"), socket(QStringLiteral("wayland-?")));
    variables.insert(QStringLiteral("XDG_SESSION_TYPE"), QStringLiteral("wayland"));
    return variables;
}

QString Sway::display() const {
    const QString file = folder_.filePath(QStringLiteral("display"));
    // The X server lets in only the user that it runs as, until that user says otherwise.
    message({QStringLiteral("exec"), QStringLiteral("'xhost +local: && printf %s \"$DISPLAY\" >%1'").arg(file)});
    QString display;
    waitUntil([&] {
        QFile written(file);
        display = written.open(QIODevice::ReadOnly) ? QString::fromUtf8(written.readAll()) : QString();
        return !display.isEmpty();
    });
    return display;
}

std::vector<Sway::Window> Sway::windows() const {
    std::vector<Window> found;
    collect(QJsonDocument::fromJson(
                message({QStringLiteral("--raw"), QStringLiteral("-t"), QStringLiteral("get_tree")}))
                .object(),
            found);
    return found;
}

QByteArray Sway::message(const QStringList& arguments) const {
    QProcess client;
    client.start(QStringLiteral("swaymsg"),
                 QStringList{QStringLiteral("--socket"), socket(QStringLiteral("sway-ipc.*.sock"))} + arguments);
    return client.waitForFinished(patience) ? client.readAllStandardOutput() : QByteArray();
}

QString Sway::socket(const QString& pattern) const {
    const QStringList found = QDir(folder_.path()).entryList({pattern}, QDir::System | QDir::Files);
    return found.isEmpty() ? QString() : folder_.filePath(found.first());
}

}  // namespace kestro
