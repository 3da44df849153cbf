#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>

namespace kestro {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that the process can save and shut down
/// cleanly. A signal that was ignored when the process started (by nohup, or a shell's background job) stays
/// ignored. Child processes are not affected. One at a time; main thread, after the application object.
class UnixSignalNotifier {
public:
    using Handler = std::function<void(int signalNumber)>;

    /// `handler` is called once per signal, from the event loop or `deliver`.
    explicit UnixSignalNotifier(Handler handler);

    /// Restores the previous signal dispositions.
    ~UnixSignalNotifier();
    UnixSignalNotifier(const UnixSignalNotifier&) = delete;
    UnixSignalNotifier& operator=(const UnixSignalNotifier&) = delete;

    /// Calls the handler now for the signals that have arrived.
    void deliver();

private:
    Handler handler_;
    QObject context_;
    QSocketNotifier notifier_;
};

}  // namespace kestro
