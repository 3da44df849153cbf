#pragma once

#include <QDBusConnection>
#include <QSocketNotifier>
#include <QString>

#include <functional>
#include <memory>

namespace kestro {

class DistributedNotifications;

/// Makes this process the only instance in its session, or detects that another one is running. The first
/// process owns the name "kestro.Kestro" on the session bus; without a bus, the abstract socket of its display,
/// which the kernel releases however the process ends. Main thread; lives as long as the application.
class SingleInstance {
public:
    static constexpr char busName[] = "kestro.Kestro";

    /// `display` distinguishes sessions without a bus. `onSecondStart` is called in the first process when a
    /// second one without a bus contacts it.
    SingleInstance(const QDBusConnection& bus, const QString& display, std::function<void()> onSecondStart);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    bool isFirst() const { return isFirst_; }

    /// Asks the first process to show its dashboard; returns once the request has been sent.
    void callFirst(DistributedNotifications& notifications);

    /// Lets another process become the first one.
    void release();

    /// Identifies the display of this process, for the constructor.
    static QString currentDisplay();

private:
    bool claimBusName();
    bool claimSocket(const QString& display);
    void acceptCallers();

    QDBusConnection bus_;
    const std::function<void()> onSecondStart_;
    int socket_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    bool isFirst_ = false;
};

}  // namespace kestro
