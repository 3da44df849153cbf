#include "platform/desktop/bus_lock_services.h"

#include "platform/desktop/wayland_lock.h"

#include <QFile>

#include <utility>

namespace kestro {

namespace {

QStringList namesOn(bool systemBus) {
    QStringList names;
    for (const auto mechanism : allLockMechanisms()) {
        const QString name = serviceName(mechanism);
        if (!name.isEmpty() && isOnSystemBus(mechanism) == systemBus && !names.contains(name)) {
            names.push_back(name);
        }
    }
    return names;
}

/// The X server's timers, suspended for as long as this exists.
class ScreenSaverLock final : public ServiceLock {
public:
    explicit ScreenSaverLock(const std::function<bool(bool)>& suspend)
        : suspend_(suspend), isSuspended_(suspend_(true)) {}
    ~ScreenSaverLock() override {
        if (isSuspended_) {
            suspend_(false);
        }
    }

    LockState state() const override { return isSuspended_ ? LockState::held : LockState::refused; }

private:
    const std::function<bool(bool)>& suspend_;
    const bool isSuspended_;
};

}  // namespace

BusLockServices::BusLockServices(BusLink& sessionBus, BusLink& systemBus, Options options)
    : systemBus_(systemBus),
      options_(std::move(options)),
      sessionOwners_(sessionBus, namesOn(false),
                     [this](const QString&) {
                         if (onOwnersChanged_) {
                             onOwnersChanged_();
                         }
                     }),
      systemOwners_(systemBus, namesOn(true), [this](const QString&) {
          if (onOwnersChanged_) {
              onOwnersChanged_();
          }
      }) {
    connect(&systemBus_, &BusLink::changed, this, &BusLockServices::followSleep);
    followSleep();
}

bool BusLockServices::runsSandboxed() {
    return QFile::exists(QStringLiteral("/.flatpak-info")) || qEnvironmentVariableIsSet("SNAP");
}

bool BusLockServices::runsOnWayland() {
    // A compositor that was started from a terminal keeps the terminal's type.
    const QString type = qEnvironmentVariable("XDG_SESSION_TYPE");
    return type == QLatin1String("wayland") ||
           (type != QLatin1String("x11") && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"));
}

QString BusLockServices::owner(LockMechanism mechanism) const {
    if (mechanism == LockMechanism::waylandIdleInhibitor) {
        return options_.waylandSocket;
    }
    if (mechanism == LockMechanism::x11ScreenSaver) {
        return options_.suspendScreenSaver ? QStringLiteral("X11") : QString();
    }
    return (isOnSystemBus(mechanism) ? systemOwners_ : sessionOwners_).owner(serviceName(mechanism));
}

std::unique_ptr<ServiceLock> BusLockServices::ask(LockMechanism mechanism, const LockWish& wish,
                                                  std::function<void()> onChange) {
    if (mechanism == LockMechanism::x11ScreenSaver) {
        return std::make_unique<ScreenSaverLock>(options_.suspendScreenSaver);
    }
    if (mechanism == LockMechanism::waylandIdleInhibitor) {
        return std::make_unique<WaylandLock>(options_.waylandSocket, options_.timing.patience,
                                             std::move(onChange));
    }
    return std::make_unique<BusLock>(isOnSystemBus(mechanism) ? systemOwners_ : sessionOwners_, mechanism, wish,
                                     options_.timing, std::move(onChange));
}

void BusLockServices::poll() {
    sessionOwners_.poll();
    systemOwners_.poll();
}

void BusLockServices::setHandlers(std::function<void()> onOwnersChanged, std::function<void()> onResumed) {
    onOwnersChanged_ = std::move(onOwnersChanged);
    onResumed_ = std::move(onResumed);
}

void BusLockServices::followSleep() {
    if (!systemBus_.isConnected()) {
        return;
    }
    // Without the service's name, which would make Qt block on the bus.
    QDBusConnection(systemBus_.connection())
        .connect(QString(), QStringLiteral("/org/freedesktop/login1"),
                 QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), this,
                 SLOT(onPrepareForSleep(QDBusMessage)));
}

/// The bus lets every user send this signal, so its sender is verified.
void BusLockServices::onPrepareForSleep(const QDBusMessage& signal) {
    const auto arguments = signal.arguments();
    const bool isResume = arguments.size() == 1 && arguments.constFirst().metaType().id() == QMetaType::Bool &&
                          !arguments.constFirst().toBool();
    if (isResume && signal.service() == owner(LockMechanism::logindIdle) && onResumed_) {
        onResumed_();
    }
}

}  // namespace kestro
