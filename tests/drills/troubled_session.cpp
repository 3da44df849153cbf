#include "tests/drills/troubled_session.h"

#include "tests/support/places.h"

#include <QFile>
#include <QString>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace kestro::drills {

namespace {

QString assignment(const char* name, const QString& value) {
    return QString::fromLatin1(name) + QLatin1Char('=') + value;
}

MachineTroubles* mapTroubles(const QByteArray& path) {
    const int file = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    const bool isSized = file >= 0 && ::ftruncate(file, sizeof(MachineTroubles)) == 0;
    void* const memory =
        isSized ? ::mmap(nullptr, sizeof(MachineTroubles), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0)
                : MAP_FAILED;
    ::close(file);
    if (memory == MAP_FAILED) {
        throw std::runtime_error("cannot share the machine's troubles");
    }
    return static_cast<MachineTroubles*>(memory);
}

}  // namespace

TroubledSession::TroubledSession(const DesktopSession& session)
    : troubles_(mapTroubles(QFile::encodeName(session.path(QStringLiteral("troubles"))))) {
    // A copy, since the loader splits its list at spaces.
    const QString library = session.path(QStringLiteral("troubled_machine.so"));
    if (!QFile::copy(QString::fromStdString(buildTree() + "/tests/troubled_machine.so"), library)) {
        throw std::runtime_error("the library that troubles programs is not built");
    }
    variables_ = {assignment("LD_PRELOAD", library),
                  assignment(troublesVariable, session.path(QStringLiteral("troubles"))),
                  assignment(folderVariable, session.path(QStringLiteral("config")))};
#ifdef KESTRO_SANITIZED
    // The sanitizer insists on being the first library.
    variables_ += assignment("ASAN_OPTIONS",
                             qEnvironmentVariable("ASAN_OPTIONS") + QStringLiteral(":verify_asan_link_order=0"));
#endif
}

TroubledSession::~TroubledSession() {
    ::munmap(troubles_, sizeof(MachineTroubles));
}

void TroubledSession::setDisk(DiskTrouble trouble, std::chrono::milliseconds delay) {
    troubles_->delay = static_cast<std::int32_t>(delay.count());
    troubles_->disk = trouble;
}

void TroubledSession::suspend(std::chrono::seconds time) {
    const std::int64_t shift = std::chrono::nanoseconds(time).count();
    troubles_->bootShift += shift;
    troubles_->wallShift += shift;
}

void TroubledSession::setWall(std::chrono::seconds shift) {
    troubles_->wallShift += std::chrono::nanoseconds(shift).count();
}

}  // namespace kestro::drills
