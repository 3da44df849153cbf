#include "tests/desktop/desktop_session.h"

#include "tests/desktop/panel_settings.h"
#include "tests/desktop/sway.h"
#include "tests/support/bus_configuration.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <csignal>
#include <iostream>

namespace kestro {

namespace {

const QString sessionBusVariable = QStringLiteral("DBUS_SESSION_BUS_ADDRESS");
const QString systemBusVariable = QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS");

/// The first line that a process prints; empty if it prints none in time.
QString firstLine(QProcess& process) {
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(DesktopSession::patience)) {
            return {};
        }
    }
    return QString::fromUtf8(process.readLine()).trimmed();
}

/// The rest of the caller's environment (scales, styles, displays, buses) belongs to the caller's own session.
QProcessEnvironment whatASessionInherits() {
    QProcessEnvironment inherited;
    for (const char* name : {"PATH", "USER", "LOGNAME", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "LSAN_OPTIONS",
                             "UBSAN_OPTIONS", "TSAN_OPTIONS", "KESTRO_TEST_RUN"}) {
        if (qEnvironmentVariableIsSet(name)) {
            inherited.insert(QString::fromLatin1(name), qEnvironmentVariable(name));
        }
    }
    return inherited;
}

QString doesNotStart(QProcess& process) {
    return process.program() + QStringLiteral(" does not start\n") +
           QString::fromUtf8(process.readAllStandardError());
}

/// Fills the folder with the services that the session bus may start: those that panels consist of and
/// accessibility needs. The others on this machine, such as a portal, would answer in place of the test's own.
void offerServices(const QString& folder) {
    QDir().mkpath(folder);
    const QStringList wanted{QStringLiteral("org.a11y.Bus.service"),
                             QStringLiteral("org.mate.panel.applet.*.service"),
                             QStringLiteral("org.xfce.Xfconf.service")};
    for (const QString& data : {QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share")}) {
        const QDir offered(data + QStringLiteral("/dbus-1/services"));
        for (const QString& name : offered.entryList(wanted, QDir::Files)) {
            QFile::copy(offered.filePath(name), folder + QLatin1Char('/') + name);
        }
    }
}

QString nextConnectionName() {
    static int count = 0;
    return QStringLiteral("desktop-session-%1").arg(++count);
}

}  // namespace

DesktopSession::DesktopSession(DesktopPanel panel, QSize screen)
    : environment_(whatASessionInherits()), panel_(panel), connectionName_(nextConnectionName()) {
    for (const char* name : {"home", "config", "data", "cache", "runtime"}) {
        QDir().mkpath(path(QString::fromLatin1(name)));
    }
    QFile::setPermissions(path(QStringLiteral("runtime")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    environment_.insert(QStringLiteral("HOME"), path(QStringLiteral("home")));
    environment_.insert(QStringLiteral("XDG_CONFIG_HOME"), path(QStringLiteral("config")));
    environment_.insert(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
    environment_.insert(QStringLiteral("XDG_CACHE_HOME"), path(QStringLiteral("cache")));
    environment_.insert(QStringLiteral("XDG_RUNTIME_DIR"), path(QStringLiteral("runtime")));
    environment_.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), panelDesktop(panel));
    environment_.insert(QStringLiteral("XDG_SESSION_TYPE"), QStringLiteral("x11"));
    environment_.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("keyfile"));
    environment_.insert(QStringLiteral("NO_AT_BRIDGE"), QStringLiteral("1"));
    environment_.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    const bool isWayland = panel_ == DesktopPanel::waybar || panel_ == DesktopPanel::waybarBesideX11;
    const bool isShown = isWayland ? startCompositor(screen) && startBuses()
                                   : startDisplay(screen) && startBuses() && startWindowManager();
    if (!isShown) {
        return;
    }
    if (panel_ != DesktopPanel::none) {
        writePanelSettings(panel_, path(QStringLiteral("config")));
        startPanel();
    }
}

DesktopSession::~DesktopSession() {
    QDBusConnection::disconnectFromBus(connectionName_);
    for (const QString& name : furtherConnections_) {
        QDBusConnection::disconnectFromBus(name);
    }
    for (auto process = processes_.rbegin(); process != processes_.rend(); ++process) {
        if (*process == processes_.front()) {
            // The display, which then removes its socket.
            (*process)->terminate();
            (*process)->waitForFinished(1000);
        }
        (*process)->kill();
        (*process)->waitForFinished(patience);
    }
    if (kestro_ != nullptr) {
        // Such as a sanitizer's report.
        std::cerr << kestro_->readAll().toStdString();
    }
    // Processes started by the bus or a panel carry the session's folder in their environment.
    for (const qint64 pid : processesOfSession()) {
        ::kill(static_cast<pid_t>(pid), SIGKILL);
    }
}

bool DesktopSession::startDisplay(QSize screen) {
    QProcess& display =
        start(QStringLiteral("Xvfb"),
              {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
               QStringLiteral("%1x%2x24").arg(screen.width()).arg(screen.height()), QStringLiteral("-nolisten"),
               QStringLiteral("tcp"), QStringLiteral("-noreset")});
    const QString number = firstLine(display);
    if (number.isEmpty()) {
        failure_ = doesNotStart(display);
        return false;
    }
    environment_.insert(QStringLiteral("DISPLAY"), QLatin1Char(':') + number);
    return true;
}

bool DesktopSession::startWindowManager() {
    QProcess& manager = start(QStringLiteral("openbox"), {});
    const QStringList check{QStringLiteral("-root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK")};
    bool isReady = false;
    waitUntil([&] {
        isReady = output(QStringLiteral("xprop"), check).contains("window id");
        return isReady || manager.state() == QProcess::NotRunning;
    });
    if (!isReady) {
        failure_ = doesNotStart(manager);
    }
    return isReady;
}

QProcess& DesktopSession::startBus(const QString& addressVariable, const QString& socket,
                                   const QString& services) {
    // In the session's folder, so that a killed daemon leaves nothing behind.
    const QString configuration = path(socket) + QStringLiteral(".conf");
    writeBusConfiguration(configuration, path(socket), services);
    QProcess& daemon =
        start(QStringLiteral("dbus-daemon"), {QStringLiteral("--config-file=") + configuration,
                                              QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    const QString address = firstLine(daemon);
    if (address.isEmpty()) {
        failure_ = doesNotStart(daemon);
    }
    environment_.insert(addressVariable, address);
    return daemon;
}

bool DesktopSession::startBuses() {
    offerServices(path(QStringLiteral("services")));
    QDir().mkpath(path(QStringLiteral("system-services")));
    sessionBus_ = &startBus(sessionBusVariable, QStringLiteral("session-bus"), path(QStringLiteral("services")));
    // A private bus, since the services on the machine's own would respond.
    systemBus_ =
        &startBus(systemBusVariable, QStringLiteral("system-bus"), path(QStringLiteral("system-services")));
    if (failure_.isEmpty() &&
        !QDBusConnection::connectToBus(environment_.value(sessionBusVariable), connectionName_).isConnected()) {
        failure_ = QStringLiteral("the session bus does not accept a connection");
    }
    return failure_.isEmpty();
}

QStringList DesktopSession::startedServices() {
    static const QRegularExpression activation(QStringLiteral("Activating service name='([^']+)'"));
    busReport_ += sessionBus_->readAllStandardError();
    QStringList names;
    auto found = activation.globalMatch(QString::fromUtf8(busReport_));
    while (found.hasNext()) {
        names.append(found.next().captured(1));
    }
    return names;
}

void DesktopSession::killBus(Bus bus) {
    QProcess& daemon = daemonOf(bus);
    daemon.kill();
    daemon.waitForFinished(patience);
}

void DesktopSession::pauseBus(Bus bus) const {
    ::kill(static_cast<pid_t>(daemonOf(bus).processId()), SIGSTOP);
}

void DesktopSession::resumeBus(Bus bus) const {
    ::kill(static_cast<pid_t>(daemonOf(bus).processId()), SIGCONT);
}

void DesktopSession::killDisplay() {
    processes_.front()->kill();
    processes_.front()->waitForFinished(patience);
}

void DesktopSession::offerSystemService(const QString& name, const QString& command) const {
    QFile file(path(QStringLiteral("system-services/") + name + QStringLiteral(".service")));
    if (!file.open(QIODevice::WriteOnly)) {
        throw std::runtime_error("cannot describe a service");
    }
    // Without quotes: the session's folder has no spaces.
    file.write(QStringLiteral("[D-BUS Service]\nName=%1\nExec=/usr/bin/env %2=%3 %4\n")
                   .arg(name, systemBusVariable, environment_.value(systemBusVariable), command)
                   .toUtf8());
}

QDBusConnection DesktopSession::connect(Bus bus) {
    furtherConnections_.append(nextConnectionName());
    return QDBusConnection::connectToBus(
        environment_.value(bus == Bus::session ? sessionBusVariable : systemBusVariable),
        furtherConnections_.last());
}

QProcess& DesktopSession::start(const QString& program, const QStringList& arguments) {
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment_);
    process->setWorkingDirectory(folder_.path());
    process->start(program, arguments);
    process->waitForStarted(patience);
    processes_.push_back(std::move(process));
    return *processes_.back();
}

void DesktopSession::startPanel() {
    const QStringList command = panelCommand(panel_);
    panelProcess_ = &start(command.first(), command.mid(1));
}

QString DesktopSession::panelReport() const {
    if (panelProcess_ == nullptr) {
        return {};
    }
    const QString output =
        QString::fromUtf8(panelProcess_->readAllStandardOutput() + panelProcess_->readAllStandardError());
    return panelProcess_->state() == QProcess::NotRunning
               ? output + QStringLiteral("(ended with %1)").arg(panelProcess_->exitCode())
               : output;
}

void DesktopSession::killPanel() {
    // The items may be hosted by a separate process that the panel only embeds.
    const QDBusMessage owner =
        call(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"), QStringLiteral("org.freedesktop.DBus"),
             QStringLiteral("GetConnectionUnixProcessID"), {QStringLiteral("org.kde.StatusNotifierWatcher")});
    if (owner.type() == QDBusMessage::ReplyMessage) {
        ::kill(static_cast<pid_t>(owner.arguments().at(0).toUInt()), SIGKILL);
    }
    if (panelProcess_ != nullptr) {
        panelProcess_->kill();
        panelProcess_->waitForFinished(patience);
        panelProcess_ = nullptr;
    }
}

QDBusMessage DesktopSession::call(const QString& service, const QString& path, const QString& interface,
                                  const QString& method, const QVariantList& arguments) const {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    const QDBusPendingCallWatcher pending(bus().asyncCall(message));
    waitUntil([&] { return pending.isFinished(); });
    return pending.reply();
}

QVariant DesktopSession::property(const QString& service, const QString& path, const QString& interface,
                                  const QString& name) const {
    const QDBusMessage reply = call(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                    QStringLiteral("Get"), {interface, name});
    if (reply.type() != QDBusMessage::ReplyMessage) {
        return {};
    }
    return reply.arguments().at(0).value<QDBusVariant>().variant();
}

QByteArray DesktopSession::output(const QString& program, const QStringList& arguments) const {
    QProcess process;
    process.setProcessEnvironment(environment_);
    process.start(program, arguments);
    if (!process.waitForFinished(patience) || process.exitStatus() != QProcess::NormalExit) {
        return {};
    }
    return process.readAllStandardOutput();
}

}  // namespace kestro
