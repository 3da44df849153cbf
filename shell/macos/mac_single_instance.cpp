#include "shell/macos/mac_single_instance.h"

#include <QDir>
#include <QStandardPaths>

namespace kestro {

MacSingleInstance::MacSingleInstance(const QString& lockFile, const std::function<void()>& showDashboard,
                                     std::chrono::milliseconds patience)
    : lock_(lockFile) {
    using namespace std::chrono_literals;
    lock_.setStaleLockTime(0);  // only the end of its process makes a lock stale, not its age
    isFirst_ = take(0ms);
    if (!isFirst_) {
        showDashboard();
        isFirst_ = take(patience);
    }
}

QString MacSingleInstance::defaultLockFile() {
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Kestro");
    QDir().mkpath(folder);
    return folder + QStringLiteral("/instance.lock");
}

bool MacSingleInstance::take(std::chrono::milliseconds patience) {
    return lock_.tryLock(static_cast<int>(patience.count())) || lock_.error() != QLockFile::LockFailedError;
}

}  // namespace kestro
