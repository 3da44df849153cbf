#pragma once

#include "tests/support/event_waiting.h"

#include <QDBusConnection>
#include <QDBusMessage>
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
#include <vector>

namespace kestro {

/// The panels that the tests know how to start.
enum class DesktopPanel { none, mate, xfce, lxqt };

/// Which executable a test starts: the one whose command file lies in the session's runtime directory, or the
/// shipped one, whose command file every process of this machine shares.
enum class KestroProgram { underTest, shipped };

/// A window on the screen.
struct DesktopWindow {
    QString identifier;  ///< of the X window, in decimal
    QString title;
    QRect frame;
};

/// A desktop of the test's own: a display, a session and a system bus, a window manager and a panel, with home and
/// configuration in a folder that is empty at first. Everything ends with this object, by process identifier,
/// also what the bus started on request.
class DesktopSession {
public:
    explicit DesktopSession(DesktopPanel panel = DesktopPanel::none);
    ~DesktopSession();
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;

    /// Why the session cannot be used; empty when everything runs. Check it first.
    const QString& failure() const { return failure_; }

    /// Starts Kestro; further variables are added to its environment. Returns the new process.
    QProcess& startKestro(const QStringList& variables = {}, KestroProgram program = KestroProgram::underTest);

    /// Waits until `condition` holds. False: it did not in time, or the Kestro started last has crashed or ended
    /// with an error; then the wait ends at once and the test fails with what the program printed.
    template <typename Condition>
    bool waitFor(Condition condition) const {
        bool holds = false;
        waitUntil([&] {
            holds = condition();
            return holds || hasKestroFailed();
        });
        if (!holds && hasKestroFailed()) {
            reportKestro();
        }
        return holds;
    }

    /// Starts any other program in the session, for as long as the session lives.
    QProcess& start(const QString& program, const QStringList& arguments);

    /// Ends the panel's processes as a crash would, without starting them again.
    void killPanel();
    void startPanel();

    /// A connection of the test to the session bus.
    QDBusConnection bus() const { return QDBusConnection(connectionName_); }

    enum class Bus { session, system };

    /// One more connection, for a service of the test's own; closed with the session.
    QDBusConnection connect(Bus bus);

    /// Calls and waits for the answer, which may be an error.
    QDBusMessage call(const QString& service, const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments = {}) const;

    /// The value of a property; invalid when it cannot be read.
    QVariant property(const QString& service, const QString& path, const QString& interface,
                      const QString& name) const;

    /// What the screen shows now; also kept as `name`.png beside the test programs, to be looked at.
    QImage screenshot(const QString& name) const;

    /// A click of the mouse's button 1, 2 or 3.
    void click(QPoint position, int button = 1) const;
    void moveTo(QPoint position) const;

    /// Presses and releases a key by its X name, such as "Escape" or "ctrl+w".
    void key(const QString& name) const;

    /// The value of an X11 property of a window, as xprop prints it.
    QString windowProperty(const DesktopWindow& window, const QString& name) const;

    /// Kestro's visible windows.
    std::vector<DesktopWindow> windows() const;

    /// The strip; nothing while there is none, or none with figures yet.
    std::optional<DesktopWindow> strip() const;

    /// Gives Kestro preferences to start with.
    void writePreferences(const QByteArray& json) const;

    /// Every file below the session's folder, as relative paths, sorted.
    QStringList files() const;
    QString path(const QString& relative) const { return folder_.filePath(relative); }

    /// Runs a program in the session and returns what it printed; empty when it failed.
    QByteArray output(const QString& program, const QStringList& arguments) const;

    static constexpr QSize screenSize{1280, 800};

private:
    bool startDisplay();
    bool startBuses();
    bool startWindowManager();
    QString startBus(const QString& socket);
    bool hasKestroFailed() const;
    void reportKestro() const;
    std::vector<qint64> processesOfSession() const;

    // Always below /tmp: a bus wants a short path without spaces, and the display has its socket there anyway.
    QTemporaryDir folder_{QStringLiteral("/tmp/kestro-desktop-XXXXXX")};
    QProcessEnvironment environment_;
    DesktopPanel panel_;
    QString failure_;
    QString connectionName_;
    QStringList furtherConnections_;
    std::vector<std::unique_ptr<QProcess>> processes_;
    QProcess* panelProcess_ = nullptr;
    QProcess* kestro_ = nullptr;  // the one started last
};

}  // namespace kestro
