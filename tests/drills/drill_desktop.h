#pragma once

#include "tests/desktop/desktop_session.h"
#include "tests/desktop/status_item_client.h"
#include "tests/support/fake_service.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace kestro::drills {

/// A watcher of status items with a host that shows nothing. It starts faster than a panel and can misbehave.
class QuietHost {
public:
    explicit QuietHost(DesktopSession& session);

    test::FakeService& service() { return *service_; }

    /// Bus names of the items that have registered, oldest first, including those of ended processes.
    QStringList items() const;

    /// When a process registered its first item; absent: not yet.
    std::optional<std::chrono::steady_clock::time_point> firstRegistration(pid_t process) const;

    /// Answers all calls with `answer` from now on, but still remembers the items. Empty: answers correctly again.
    void misbehave(test::FakeService::Answer answer);

private:
    struct Registration {
        QString item;
        std::chrono::steady_clock::time_point time;
    };

    QDBusMessage registerItem(const QDBusMessage& call);
    QDBusMessage property(const QDBusMessage& call) const;

    mutable std::mutex mutex_;
    std::vector<Registration> registrations_;
    test::FakeService::Answer misbehaviour_;
    std::unique_ptr<test::FakeService> service_;  // last: its thread uses the others
};

/// A private desktop with a quiet host and the program under test, for drills that start it many times. Throws
/// if the desktop does not start.
class DrillDesktop {
public:
    explicit DrillDesktop(DesktopPanel panel = DesktopPanel::none, QSize screen = DesktopSession::screenSize);

    /// Without a panel and without a host: the program shows its strip.
    static std::unique_ptr<DrillDesktop> withoutHost();

    /// Starts the program without waiting for it.
    QProcess& start(const QStringList& variables = {});

    /// Waits for the program's main item, or for its strip without a host, but not longer than for a slow start.
    /// False: it did not appear.
    bool awaitItem();

    /// Starts the program and waits for its item; throws what it printed if there is none.
    void launch(const QStringList& variables = {});

    bool isRunning() const { return kestro != nullptr && kestro->state() == QProcess::Running; }
    pid_t pid() const { return static_cast<pid_t>(kestro->processId()); }

    /// Sends a signal and waits for the end of the process. False: it does not end.
    bool end(int signal);

    /// Bus name of the program's main item; empty until it has registered.
    QString mainItem() const;

    /// Clicks an entry of the main item's menu. False: there is no such entry.
    bool choose(const QString& title) const;

    /// Replaces the text of a regular file, which is created if missing. False: something else is in its place.
    static bool writeText(const QString& path, const QByteArray& text);

    /// Writes to the command file.
    bool write(const QByteArray& word) const;

    /// Writes a word and waits until it has been consumed. False: it was not.
    bool command(const QByteArray& word) const;

    /// Posts a notification.
    void notify(const QString& member, const QVariantList& arguments = {}) const;

    /// Waits until requests that arrived before have been handled: each answer of the main thread takes another
    /// turn of its event loop. False: it does not answer.
    bool settle() const;

    /// Asks the main thread for a property and returns how long that took; nullopt: no answer.
    std::optional<std::chrono::microseconds> latency() const;

    /// Processor time of the program's main thread so far, which other load on the machine does not affect.
    std::chrono::nanoseconds mainThreadTime() const;

    /// Waits while running this process's event loop.
    static void pause(std::chrono::milliseconds time);

    QString commandFile() const { return session.path(QStringLiteral("runtime/.kestro_cmd")); }
    QString preferencesFile() const { return session.path(QStringLiteral("config/kestro/preferences.json")); }

    /// Files of the program and its preferences, relative to the session's folder.
    QStringList ownFiles() const;

    DesktopSession session;
    QuietHost* host() { return host_.get(); }
    QProcess* kestro = nullptr;

private:
    enum class Host { none, quiet, panel };

    DrillDesktop(Host host, DesktopPanel panel, QSize screen);

    const Host kind_;
    std::unique_ptr<QuietHost> host_;
    StatusItemClient client_{session};
};

}  // namespace kestro::drills
