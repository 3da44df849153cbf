#include "tests/desktop/desktop_session.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>

namespace kestro {

void DesktopSession::writePreferences(const QByteArray& json) const {
    writeFile(QStringLiteral("config/kestro/preferences.json"), json);
}

void DesktopSession::writeFile(const QString& relative, const QByteArray& contents) const {
    QDir().mkpath(QFileInfo(path(relative)).path());
    QFile file(path(relative));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(contents);
    }
}

QStringList DesktopSession::files() const {
    QStringList found;
    QDirIterator walk(folder_.path(), QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        found.append(QDir(folder_.path()).relativeFilePath(walk.next()));
    }
    found.sort();
    return found;
}

std::vector<qint64> DesktopSession::processesOfSession() const {
    const QByteArray mark = "XDG_RUNTIME_DIR=" + path(QStringLiteral("runtime")).toLocal8Bit() + '\0';
    std::vector<qint64> found;
    for (const QString& name : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool isNumber = false;
        const qint64 pid = name.toLongLong(&isNumber);
        QFile environment(QStringLiteral("/proc/%1/environ").arg(name));
        if (isNumber && pid != QCoreApplication::applicationPid() && environment.open(QIODevice::ReadOnly) &&
            environment.readAll().contains(mark)) {
            found.push_back(pid);
        }
    }
    return found;
}

}  // namespace kestro
