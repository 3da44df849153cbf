#include "tests/desktop/desktop_session.h"
#include "tests/support/places.h"

#include <memory>
#include <string>
#include <utility>

namespace kestro {

QProcess& DesktopSession::startKestro(const QStringList& variables, KestroProgram program) {
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = environment_;
    for (const QString& variable : variables) {
        environment.insert(variable.section(QLatin1Char('='), 0, 0), variable.section(QLatin1Char('='), 1));
    }
    process->setProcessEnvironment(environment);
    process->setWorkingDirectory(folder_.path());
    process->setProcessChannelMode(QProcess::MergedChannels);
    const char* const executable = program == KestroProgram::shipped ? "/kestro" : "/tests/kestro_under_test";
    process->start(QString::fromStdString(buildTree() + executable), {});
    process->waitForStarted(patience);
    processes_.push_back(std::move(process));
    kestro_ = processes_.back().get();
    return *kestro_;
}

bool DesktopSession::hasKestroFailed() const {
    return kestro_ != nullptr && kestro_->state() == QProcess::NotRunning &&
           (kestro_->error() == QProcess::FailedToStart || kestro_->exitStatus() == QProcess::CrashExit ||
            kestro_->exitCode() != 0);
}

std::string DesktopSession::kestroFailure() const {
    if (kestro_->error() == QProcess::FailedToStart) {
        return (kestro_->program() + QStringLiteral(": ") + kestro_->errorString()).toStdString();
    }
    const QString how = kestro_->exitStatus() == QProcess::CrashExit ? QStringLiteral("crashed: signal ")
                                                                     : QStringLiteral("ended: ");
    return (QStringLiteral("Kestro ") + how + QString::number(kestro_->exitCode()) + QLatin1Char('\n') +
            QString::fromUtf8(kestro_->readAll()))
        .toStdString();
}

}  // namespace kestro
