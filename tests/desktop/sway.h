#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <vector>

namespace kestro {

/// A headless Wayland compositor for a test. It refuses to run as root: then it runs as nobody, in a runtime
/// folder of that user, and root connects to its sockets. Destruction ends it.
class Sway {
public:
    struct Window {
        qint64 pid = 0;
        QString title;
        QRect frame;
    };

    /// What this machine lacks to run it, with a panel and the X server for it; empty: nothing.
    static QString missing();

    /// Starts it with one screen.
    Sway(QSize screen, QProcessEnvironment environment);
    ~Sway();
    Sway(const Sway&) = delete;
    Sway& operator=(const Sway&) = delete;

    /// Why it does not run; empty when it does.
    const QString& failure() const { return failure_; }

    /// The variables by which programs find it.
    QProcessEnvironment clientVariables() const;

    /// The display of its X server, which it starts on request; empty if that fails.
    QString display() const;

    /// The windows that are shown, of either window system.
    std::vector<Window> windows() const;

private:
    QByteArray message(const QStringList& arguments) const;
    QString socket(const QString& pattern) const;

    // Below no folder of the caller's, which nobody could not enter.
    QTemporaryDir folder_{QStringLiteral("/tmp/kestro-sway-XXXXXX")};
    QProcess process_;
    QString failure_;
};

}  // namespace kestro
