#include "tests/shell/linux/fake_watcher.h"

#include <QDBusMessage>

namespace kestro {

namespace {

const QString service = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString path = QStringLiteral("/StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");

}  // namespace

FakeWatcher::FakeWatcher(const QDBusConnection& connection, bool hasHost)
    : connection_(connection), hasHost_(hasHost) {
    connection_.registerObject(path, this,
                               QDBusConnection::ExportScriptableContents | QDBusConnection::ExportAllProperties);
    for (const char* name : {"NewTitle", "NewIcon", "NewToolTip", "NewStatus", "XAyatanaNewLabel"}) {
        connection_.connect(QString(), QStringLiteral("/StatusNotifierItem"), itemInterface,
                            QString::fromLatin1(name), this, SLOT(onSignal(QDBusMessage)));
    }
    connection_.registerService(service);
}

FakeWatcher::~FakeWatcher() {
    connection_.unregisterService(service);
    connection_.unregisterObject(path);
}

void FakeWatcher::setHost(bool hasHost) {
    hasHost_ = hasHost;
    if (hasHost) {
        Q_EMIT StatusNotifierHostRegistered();
    } else {
        Q_EMIT StatusNotifierHostUnregistered();
    }
}

void FakeWatcher::RegisterStatusNotifierItem(const QString& item) {
    registrations.append(item);
    Q_EMIT StatusNotifierItemRegistered(item);
}

void FakeWatcher::RegisterStatusNotifierHost(const QString&) {
    setHost(true);
}

void FakeWatcher::onSignal(const QDBusMessage& message) {
    announcements.append(message.member());
}

}  // namespace kestro
