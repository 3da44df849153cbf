#include "platform/linux/kernel/linux_file_events.h"

#include "core/platform/run_loop.h"
#include "platform/posix/trusted_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/stat.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>
#include <thread>

namespace kestro {

namespace {

/// Follows one path across writes, replacement and deletion, and creates the file when it is missing. Watches only
/// the file while it exists. Watches the directory, where other users may be busy, only while the path is taken by
/// something untrusted.
class PathWatch {
public:
    explicit PathWatch(const std::string& path)
        : path_(path),
          directory_(path.substr(0, path.rfind('/') + 1)),
          name_(path.substr(path.rfind('/') + 1)),
          inotify_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

    int descriptor() const { return inotify_.get(); }

    /// Watches the file, or waits for a trusted one to appear. False: its directory is missing, or the kernel has
    /// no watch left.
    bool arm() {
        watchOrRenewFile();
        if (fileWatch_ < 0 && directoryWatch_ < 0) {
            directoryWatch_ = inotify_add_watch(inotify_.get(), directory_.c_str(),
                                                IN_CREATE | IN_DELETE | IN_MOVE | IN_ATTRIB | IN_ONLYDIR);
            // Retry: what had taken the name may have gone before the directory was watched.
            watchOrRenewFile();
        }
        if (fileWatch_ >= 0) {
            forget(directoryWatch_);
        }
        return fileWatch_ >= 0 || directoryWatch_ >= 0;
    }

    /// Consumes all pending events. True: the file was written to or replaced.
    bool consume() {
        bool written = false;
        bool moved = false;
        alignas(inotify_event) std::array<char, 4096> buffer;
        for (ssize_t length = 0; (length = ::read(inotify_.get(), buffer.data(), buffer.size())) > 0;) {
            for (ssize_t offset = 0; offset < length;) {
                inotify_event event{};
                std::memcpy(&event, buffer.data() + offset, sizeof event);
                const char* name = event.len > 0 ? buffer.data() + offset + sizeof event : "";
                offset += static_cast<ssize_t>(sizeof event + event.len);
                if (event.mask & IN_Q_OVERFLOW) {
                    written = moved = true;
                } else if (event.wd == fileWatch_) {
                    written = written || (event.mask & IN_MODIFY) != 0;
                    moved = moved || (event.mask & ~static_cast<std::uint32_t>(IN_MODIFY)) != 0;
                } else if (event.wd == directoryWatch_ && name_ == name) {
                    moved = true;
                }
            }
        }
        if (moved) {
            written = follow() || written;
        }
        return written;
    }

private:
    void watchOrRenewFile() {
        if (!watchFile()) {
            renewTrusted(path_);
            watchFile();
        }
    }

    bool watchFile() {
        const auto file = openTrusted(path_, O_RDONLY);
        if (file.isOpen()) {
            // Via the descriptor: the path may refer to another file by now.
            const auto opened = fmt::format("/proc/self/fd/{}", file.get());
            fileWatch_ = inotify_add_watch(inotify_.get(), opened.c_str(),
                                           IN_MODIFY | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF);
            if (!isStillThere(file)) {
                // Nothing would announce that: it happened before the file was watched.
                forget(fileWatch_);
            }
        }
        return fileWatch_ >= 0;
    }

    /// Whether the path refers to this open file.
    bool isStillThere(const Descriptor& file) const {
        struct stat opened {};
        struct stat found {};
        return ::fstat(file.get(), &opened) == 0 && ::lstat(path_.c_str(), &found) == 0 &&
               opened.st_dev == found.st_dev && opened.st_ino == found.st_ino;
    }

    /// True: the path now refers to a file that was not watched before.
    bool follow() {
        const auto before = std::exchange(fileWatch_, -1);
        arm();
        if (before >= 0 && before != fileWatch_) {
            inotify_rm_watch(inotify_.get(), before);
        }
        return fileWatch_ >= 0 && fileWatch_ != before;
    }

    void forget(int& watch) {
        if (watch >= 0) {
            inotify_rm_watch(inotify_.get(), watch);
            watch = -1;
        }
    }

    const std::string path_;
    const std::string directory_;
    const std::string name_;
    const Descriptor inotify_;
    int fileWatch_ = -1;
    int directoryWatch_ = -1;
};

class InotifySource final : public FileEventSource, public std::enable_shared_from_this<InotifySource> {
public:
    InotifySource(RunLoop& runLoop, const std::string& path, FileEvents::Handler handler)
        : runLoop_(runLoop), watch_(path), handler_(std::move(handler)), stop_(eventfd(0, EFD_CLOEXEC)) {}

    ~InotifySource() override {
        if (thread_.joinable()) {
            const std::uint64_t one = 1;
            while (write(stop_.get(), &one, sizeof one) < 0 && errno == EINTR) {
            }
            thread_.join();
        }
    }

    bool start() {
        if (!stop_.isOpen() || watch_.descriptor() < 0 || !watch_.arm()) {
            return false;
        }
        weakSelf_ = weak_from_this();
        thread_ = std::thread([this] { wait(); });
        return true;
    }

private:
    void wait() {
        std::array<pollfd, 2> waiting{{{watch_.descriptor(), POLLIN, 0}, {stop_.get(), POLLIN, 0}}};
        while (true) {
            const int ready = poll(waiting.data(), waiting.size(), -1);
            if (ready < 0 && errno != EINTR) {
                return;
            }
            if (waiting[1].revents != 0) {
                return;
            }
            if (ready > 0 && watch_.consume() && !announced_.exchange(true)) {
                runLoop_.post([weak = weakSelf_] {
                    if (const auto self = weak.lock()) {
                        // Reset it first: a write during the call is a new event.
                        self->announced_ = false;
                        self->handler_();
                    }
                });
            }
        }
    }

    RunLoop& runLoop_;
    PathWatch watch_;
    const FileEvents::Handler handler_;
    const Descriptor stop_;
    std::weak_ptr<InotifySource> weakSelf_;
    std::atomic<bool> announced_ = false;
    std::thread thread_;
};

/// The caller's handle: the watch itself may be inside a callback when it is cancelled.
class OwnedSource final : public FileEventSource {
public:
    explicit OwnedSource(std::shared_ptr<InotifySource> source) : source_(std::move(source)) {}

private:
    std::shared_ptr<InotifySource> source_;
};

}  // namespace

std::unique_ptr<FileEventSource> LinuxFileEvents::watchWrites(const std::string& path, Handler handler) {
    auto source = std::make_shared<InotifySource>(runLoop_, path, std::move(handler));
    if (!source->start()) {
        return nullptr;
    }
    return std::make_unique<OwnedSource>(std::move(source));
}

}  // namespace kestro
