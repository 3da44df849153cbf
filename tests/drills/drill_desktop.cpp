#include "tests/drills/drill_desktop.h"

#include "platform/posix/descriptor.h"

#include <QDBusVariant>
#include <QElapsedTimer>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>
#include <utility>

namespace kestro::drills {

namespace {

using namespace std::chrono_literals;
using test::FakeService;

constexpr auto patience = 20s;
constexpr int turnsToSettle = 3;

const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");

/// What the bus names of a process's items begin with.
QString itemsOf(pid_t process) {
    return QStringLiteral("org.kde.StatusNotifierItem-%1-").arg(process);
}

}  // namespace

QuietHost::QuietHost(DesktopSession& session) {
    service_ = std::make_unique<FakeService>(
        session.connect(DesktopSession::Bus::session), watcher,
        FakeService::Answers{{QStringLiteral("Get"), [this](const QDBusMessage& call) { return property(call); }},
                             {QStringLiteral("RegisterStatusNotifierItem"),
                              [this](const QDBusMessage& call) { return registerItem(call); }}});
}

QStringList QuietHost::items() const {
    const std::lock_guard lock(mutex_);
    QStringList items;
    for (const Registration& registration : registrations_) {
        items.append(registration.item);
    }
    return items;
}

std::optional<std::chrono::steady_clock::time_point> QuietHost::firstRegistration(pid_t process) const {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find_if(registrations_, [process](const Registration& registration) {
        return registration.item.startsWith(itemsOf(process));
    });
    return found != registrations_.end() ? std::optional(found->time) : std::nullopt;
}

void QuietHost::misbehave(FakeService::Answer answer) {
    const std::lock_guard lock(mutex_);
    misbehaviour_ = std::move(answer);
}

QDBusMessage QuietHost::registerItem(const QDBusMessage& call) {
    const std::lock_guard lock(mutex_);
    registrations_.push_back({call.arguments().value(0).toString(), std::chrono::steady_clock::now()});
    return misbehaviour_ ? misbehaviour_(call) : call.createReply();
}

QDBusMessage QuietHost::property(const QDBusMessage& call) const {
    const bool asksForHost =
        call.arguments().value(1).toString() == QLatin1StringView("IsStatusNotifierHostRegistered");
    const QVariant value = asksForHost ? QVariant(true) : QVariant(items());
    const std::lock_guard lock(mutex_);
    return misbehaviour_ ? misbehaviour_(call) : call.createReply(QVariant::fromValue(QDBusVariant(value)));
}

DrillDesktop::DrillDesktop(DesktopPanel panel, QSize screen)
    : DrillDesktop(panel == DesktopPanel::none ? Host::quiet : Host::panel, panel, screen) {}

std::unique_ptr<DrillDesktop> DrillDesktop::withoutHost() {
    return std::unique_ptr<DrillDesktop>(
        new DrillDesktop(Host::none, DesktopPanel::none, DesktopSession::screenSize));
}

DrillDesktop::DrillDesktop(Host host, DesktopPanel panel, QSize screen) : session(panel, screen), kind_(host) {
    if (!session.failure().isEmpty()) {
        throw std::runtime_error(session.failure().toStdString());
    }
    if (kind_ == Host::quiet) {
        host_ = std::make_unique<QuietHost>(session);
    }
}

QProcess& DrillDesktop::start(const QStringList& variables) {
    kestro = &session.startKestro(variables);
    return *kestro;
}

bool DrillDesktop::awaitItem() {
    const auto isThere = [this] {
        return kind_ == Host::none ? session.strip().has_value() : !mainItem().isEmpty();
    };
    return waitUntil([&] { return isThere() || !isRunning(); }, patience) && isRunning();
}

void DrillDesktop::launch(const QStringList& variables) {
    start(variables);
    if (!awaitItem()) {
        throw std::runtime_error("Kestro shows no item: " + kestro->readAll().toStdString());
    }
}

bool DrillDesktop::end(int signal) {
    ::kill(pid(), signal);
    return waitUntil([this] { return kestro->state() == QProcess::NotRunning; }, patience);
}

QString DrillDesktop::mainItem() const {
    if (!host_) {
        return client_.item(QStringLiteral("kestro-main")).value_or(QString());
    }
    const QString own = itemsOf(pid());
    const QStringList items = host_->items();
    for (auto item = items.crbegin(); item != items.crend(); ++item) {
        if (item->startsWith(own) &&
            client_.property(*item, QStringLiteral("Id")) == QStringLiteral("kestro-main")) {
            return *item;
        }
    }
    return {};
}

bool DrillDesktop::choose(const QString& title) const {
    // A panel that starts can drop its items and take new ones.
    QString item;
    HostMenuEntry menu;
    waitUntil(
        [&] {
            item = mainItem();
            menu = client_.menu(item);
            return !menu.children.empty() || !isRunning();
        },
        patience);
    const HostMenuEntry* const found = menu.find(title);
    if (found != nullptr) {
        client_.choose(item, found->id);
    }
    return found != nullptr;
}

bool DrillDesktop::writeText(const QString& path, const QByteArray& text) {
    constexpr int flags = O_WRONLY | O_CREAT | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC;
    const Descriptor file(::open(QFile::encodeName(path).constData(), flags, S_IRUSR | S_IWUSR));
    struct stat status {};
    return file.isOpen() && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::ftruncate(file.get(), 0) == 0 &&
           ::write(file.get(), text.constData(), static_cast<std::size_t>(text.size())) == text.size();
}

bool DrillDesktop::write(const QByteArray& word) const {
    return writeText(commandFile(), word);
}

bool DrillDesktop::command(const QByteArray& word) const {
    return write(word) && waitUntil([this] { return QFile(commandFile()).size() == 0; }, patience);
}

void DrillDesktop::notify(const QString& member, const QVariantList& arguments) const {
    auto signal =
        QDBusMessage::createSignal(QStringLiteral("/kestro/notify"), QStringLiteral("kestro.notify"), member);
    signal.setArguments(arguments);
    session.bus().send(signal);
}

bool DrillDesktop::settle() const {
    for (int turn = 0; turn < turnsToSettle; ++turn) {
        if (!latency()) {
            return false;
        }
    }
    return true;
}

std::optional<std::chrono::microseconds> DrillDesktop::latency() const {
    QElapsedTimer timer;
    const auto hasAnswered = [&] {
        // A host that comes and goes can drop its items and take new ones.
        const QString item = mainItem();
        timer.start();
        return !item.isEmpty() && client_.property(item, QStringLiteral("Id")).isValid();
    };
    if (!waitUntil([&] { return hasAnswered() || !isRunning(); }, patience) || !isRunning()) {
        return std::nullopt;
    }
    return std::chrono::microseconds(timer.nsecsElapsed() / 1000);
}

std::chrono::nanoseconds DrillDesktop::mainThreadTime() const {
    QFile file(QStringLiteral("/proc/%1/task/%1/schedstat").arg(pid()));
    return std::chrono::nanoseconds(
        file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(0).toLongLong() : 0);
}

void DrillDesktop::pause(std::chrono::milliseconds time) {
    waitUntil([] { return false; }, time);
}

QStringList DrillDesktop::ownFiles() const {
    QStringList own;
    for (const QString& file : session.files()) {
        if (file.startsWith(QLatin1StringView("runtime/")) || file.contains(QLatin1StringView("/kestro"))) {
            own.append(file);
        }
    }
    return own;
}

}  // namespace kestro::drills
