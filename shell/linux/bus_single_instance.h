#pragma once

#include "shell/linux/notifier/bus_object.h"
#include "shell/single_instance.h"

#include <QDBusConnection>
#include <QSocketNotifier>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace kestro {

/// Makes this process the only instance in its session, or calls the one that is. The first process owns the name
/// "kestro.Kestro" on the session bus and answers calls of the method ShowDashboard there; without a bus, it
/// listens on the abstract socket of its display, which the kernel releases however the process ends, and answers
/// each caller with a byte. Main thread; lives as long as the application.
class BusSingleInstance final : public SingleInstance {
public:
    static constexpr char busName[] = "kestro.Kestro";

    /// Called in the first process for each later start. False: this process is ending, and the caller should
    /// wait for its place.
    using CallHandler = std::function<bool()>;

    /// Returns once this process is the first one, or the first one has answered, or, since that one may be hung,
    /// `patience` has passed; runs the event loop while it waits. `display` distinguishes sessions without a bus.
    BusSingleInstance(const QDBusConnection& bus, const QString& display, CallHandler onCall,
                      std::chrono::milliseconds patience = std::chrono::seconds(1));
    ~BusSingleInstance() override;
    BusSingleInstance(const BusSingleInstance&) = delete;
    BusSingleInstance& operator=(const BusSingleInstance&) = delete;

    bool isFirst() const override { return isFirst_; }
    void release() override;

    /// Identifies the display of this process, for the constructor.
    static QString currentDisplay();

private:
    class Call;

    void claimOrCall(const QString& display, std::chrono::milliseconds patience);
    bool claim(const QString& display);
    bool claimBusName();
    bool claimSocket(const QString& display);
    std::unique_ptr<Call> callFirst(const QString& display, const std::function<void()>& onAnswer) const;
    void acceptCallers();

    QDBusConnection bus_;
    const CallHandler onCall_;
    BusObject object_;
    int socket_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    bool isFirst_ = false;
};

}  // namespace kestro
