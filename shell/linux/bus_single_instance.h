#pragma once

#include "shell/single_instance.h"

#include <QDBusConnection>
#include <QSocketNotifier>
#include <QString>

#include <functional>
#include <memory>

namespace kestro {

/// Makes this process the only instance in its session, or detects that another one is running. The first
/// process owns the name "kestro.Kestro" on the session bus; without a bus, the abstract socket of its display,
/// which the kernel releases however the process ends. Main thread; lives as long as the application.
class BusSingleInstance final : public SingleInstance {
public:
    static constexpr char busName[] = "kestro.Kestro";

    /// `display` distinguishes sessions without a bus. `onSecondStart` is called in the first process when a
    /// second one without a bus contacts it.
    BusSingleInstance(const QDBusConnection& bus, const QString& display, std::function<void()> onSecondStart);
    ~BusSingleInstance() override;
    BusSingleInstance(const BusSingleInstance&) = delete;
    BusSingleInstance& operator=(const BusSingleInstance&) = delete;

    bool isFirst() const override { return isFirst_; }
    void callFirst(const std::function<void()>& post) override;
    void release() override;

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
