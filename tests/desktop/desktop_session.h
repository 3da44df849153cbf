#pragma once

#include "tests/support/event_waiting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariantList>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace kestro {

class Sway;

/// The panels that the tests can start; waybar on a Wayland compositor, the others on X11. Beside X11: programs
/// can choose between the two.
enum class DesktopPanel { none, mate, xfce, lxqt, waybar, waybarBesideX11 };

/// Which executable a test starts: the one with its command file in the session's runtime directory, or the
/// shipped one, whose command file is shared by all processes of this machine.
enum class KestroProgram { underTest, shipped };

/// A window on the screen.
struct DesktopWindow {
    QString identifier;  ///< of the X window, in decimal
    QString title;
    QRect frame;
};

/// A private desktop for a test: a display, a session and a system bus, a window manager and a panel, with home
/// and configuration in an initially empty folder. Destruction ends all of its processes, by identifier,
/// including those that the bus started on request.
class DesktopSession {
public:
    static constexpr QSize screenSize{1280, 800};

    /// How long a process may take to start, print or end, in milliseconds.
    static constexpr int patience = 20'000;

    /// With a screen of `screen` pixels.
    explicit DesktopSession(DesktopPanel panel = DesktopPanel::none, QSize screen = screenSize);
    ~DesktopSession();
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;

    /// Why the session cannot be used; empty when everything is running. Check it first.
    const QString& failure() const { return failure_; }

    /// Starts Kestro with additional environment variables. Returns the new process.
    QProcess& startKestro(const QStringList& variables = {}, KestroProgram program = KestroProgram::underTest);

    /// Waits until `condition` holds; false: it timed out. Throws the program's output, which ends the test, as
    /// soon as the Kestro started last has crashed or exited with an error.
    template <typename Condition>
    bool waitFor(Condition condition) const {
        bool holds = false;
        waitUntil([&] {
            holds = condition();
            return holds || hasKestroFailed();
        });
        if (!holds && hasKestroFailed()) {
            throw std::runtime_error(kestroFailure());
        }
        return holds;
    }

    /// Starts another program that runs as long as the session.
    QProcess& start(const QString& program, const QStringList& arguments);

    /// Kills the panel's processes, as a crash would, without restarting them.
    void killPanel();
    void startPanel();

    /// What the panel has printed since the last call, and how it ended if it did; empty without one.
    QString panelReport() const;

    /// The test's connection to the session bus.
    QDBusConnection bus() const { return QDBusConnection(connectionName_); }

    /// The services that the session bus has started or tried to start, in order.
    QStringList startedServices();

    enum class Bus { session, system };

    /// An additional connection, for a service of the test; closed with the session.
    QDBusConnection connect(Bus bus);

    /// Calls a method and waits for the reply, which may be an error.
    QDBusMessage call(const QString& service, const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments = {}) const;

    /// Kills a bus, as a crash would. Afterwards, the session can only be used without it.
    void killBus(Bus bus);

    /// Stops a bus, which then accepts connections and does not answer until it is resumed.
    void pauseBus(Bus bus) const;
    void resumeBus(Bus bus) const;

    /// Kills the display.
    void killDisplay();

    /// Lets the system bus start a service on demand with this command.
    void offerSystemService(const QString& name, const QString& command) const;

    /// The value of a property; invalid when it cannot be read.
    QVariant property(const QString& service, const QString& path, const QString& interface,
                      const QString& name) const;

    /// A screenshot; also saved as `name`.png beside the test programs, for inspection.
    QImage screenshot(const QString& name) const;

    /// Whether a panel has drawn an item at a place. An empty panel has rows of one colour.
    bool showsAnItemAt(QPoint place) const;

    /// Clicks mouse button 1, 2 or 3.
    void click(QPoint position, int button = 1) const;
    void moveTo(QPoint position) const;

    /// Presses and releases a key by its X name, such as "Escape" or "ctrl+w".
    void key(const QString& name) const;

    /// The value of an X11 property of a window, as xprop prints it.
    QString windowProperty(const DesktopWindow& window, const QString& name) const;

    /// Kestro's visible windows.
    std::vector<DesktopWindow> windows() const;

    /// The strip; absent while there is none or it shows no figures yet.
    std::optional<DesktopWindow> strip() const;

    /// Writes the preferences that Kestro starts with.
    void writePreferences(const QByteArray& json) const;

    /// Writes a file in the session's folder.
    void writeFile(const QString& relative, const QByteArray& contents) const;

    /// Every file below the session's folder, as relative paths, sorted.
    QStringList files() const;
    QString display() const { return environment_.value(QStringLiteral("DISPLAY")); }
    QString path(const QString& relative) const { return folder_.filePath(relative); }

    /// Runs a program in the session and returns its output; empty if it failed.
    QByteArray output(const QString& program, const QStringList& arguments) const;

private:
    bool startDisplay(QSize screen);
    bool startCompositor(QSize screen);
    bool startBuses();
    bool startWindowManager();
    QProcess& startBus(const QString& addressVariable, const QString& socket, const QString& services = {});
    QProcess& daemonOf(Bus bus) const { return bus == Bus::session ? *sessionBus_ : *systemBus_; }
    bool hasKestroFailed() const;
    std::string kestroFailure() const;
    std::vector<qint64> processesOfSession() const;

    // A bus needs a short path without spaces, which the runner of the tests provides.
    QTemporaryDir folder_{QDir::tempPath() + QStringLiteral("/desktop-XXXXXX")};
    QProcessEnvironment environment_;
    std::unique_ptr<Sway> sway_;  // only for its panels
    DesktopPanel panel_;
    QString failure_;
    QString connectionName_;
    QStringList furtherConnections_;
    std::vector<std::unique_ptr<QProcess>> processes_;
    QProcess* panelProcess_ = nullptr;
    QProcess* sessionBus_ = nullptr;
    QProcess* systemBus_ = nullptr;
    QByteArray busReport_;        // everything that the session bus has written to stderr
    QProcess* kestro_ = nullptr;  // the one started last
};

}  // namespace kestro
