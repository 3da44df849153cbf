#include "tests/support/private_bus.h"

#include "platform/posix/descriptor.h"
#include "tests/support/bus_configuration.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <string>
#include <utility>

namespace kestro {

namespace {

/// Starts the daemon, which writes its address to `output`. QProcess is unsuitable: its child briefly shares
/// this process's memory, and the thread sanitizer then mistakes this process for the child and stops checking.
pid_t startDaemon(const std::string& configurationFile, const Descriptor& output) {
    std::string program = "dbus-daemon";
    std::string file = "--config-file=" + configurationFile;
    std::string foreground = "--nofork";
    std::string noPidFile = "--nopidfile";
    std::string printAddress = "--print-address=1";
    const std::array<char*, 6> arguments{program.data(),   file.data(),         foreground.data(),
                                         noPidFile.data(), printAddress.data(), nullptr};
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, output.get(), STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = -1;
    const int failure = ::posix_spawnp(&child, program.c_str(), &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return failure == 0 ? child : -1;
}

/// Everything before the first newline, or everything so far if the other end closes.
std::string readLine(const Descriptor& input) {
    std::string line;
    for (char next = 0; ::read(input.get(), &next, 1) == 1 && next != '\n';) {
        line += next;
    }
    return line;
}

}  // namespace

PrivateBus::PrivateBus() {
    const QString file = directory_.filePath(QStringLiteral("bus.conf"));
    writeBusConfiguration(file, directory_.filePath(QStringLiteral("bus")));
    start();
}

void PrivateBus::restart() {
    kill();
    start();
}

void PrivateBus::start() {
    const QString file = directory_.filePath(QStringLiteral("bus.conf"));
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("cannot make a pipe");
    }
    const Descriptor reader(ends[0]);
    Descriptor writer(ends[1]);
    daemon_ = startDaemon(file.toStdString(), writer);
    writer.close();
    address_ = QString::fromStdString(readLine(reader));
    if (address_.isEmpty()) {
        kill();
        throw std::runtime_error("dbus-daemon does not start");
    }
}

PrivateBus::~PrivateBus() {
    for (const auto& name : names_) {
        QDBusConnection::disconnectFromBus(name);
    }
    kill();
}

QDBusConnection PrivateBus::connect() {
    static int count = 0;
    names_.push_back(QStringLiteral("private-bus-%1").arg(++count));
    auto connection = QDBusConnection::connectToBus(address_, names_.back());
    if (!connection.isConnected()) {
        throw std::runtime_error("cannot connect to the private bus");
    }
    return connection;
}

void PrivateBus::kill() {
    if (daemon_ > 0) {
        ::kill(daemon_, SIGKILL);
        ::waitpid(std::exchange(daemon_, -1), nullptr, 0);
    }
}

}  // namespace kestro
