#include "platform/macos/mac_file_events.h"

#include "core/platform/run_loop.h"
#include "platform/macos/vnode_source.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/trusted_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace kestro {

namespace {

static_assert(O_EVTONLY == 0x8000);

/// What makes a file the same one.
struct FileIdentity {
    dev_t device = 0;
    ino_t number = 0;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

FileIdentity identityOf(const Descriptor& file) {
    struct stat status {};
    return fstat(file.get(), &status) == 0 ? FileIdentity{status.st_dev, status.st_ino} : FileIdentity{};
}

/// Follows one path through writes, replacements, deletions and changes of permission.
class PathWatch final : public FileEventSource, public std::enable_shared_from_this<PathWatch> {
public:
    PathWatch(RunLoop& runLoop, const std::string& path, FileEvents::Handler handler)
        : runLoop_(runLoop),
          path_(path),
          folder_(path.substr(0, path.rfind('/') + 1)),
          handler_(std::move(handler)) {}

    /// False: the file is missing, and its folder cannot be watched.
    bool start() {
        follow();
        return file_ != nullptr || folderWatch_ != nullptr;
    }

private:
    /// Watches the file that is now at the path, a new one if it is missing, or else the folder. True: there is a
    /// trusted file, which was not there before or was not trusted.
    bool follow() {
        bool isNew = watchFile();
        if (!isTrusted_) {
            renewTrusted(path_);
            isNew = watchFile() || isNew;
        }
        if (file_ == nullptr && folderWatch_ == nullptr) {
            watchFolder();
            // Again: the file may have appeared before the folder was watched.
            isNew = watchFile() || isNew;
        }
        return isNew;
    }

    /// Also watches a file that is not trusted: its permissions may change.
    bool watchFile() {
        Descriptor descriptor(open(path_.c_str(), O_EVTONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        const bool wasTrusted = std::exchange(isTrusted_, isTrusted(descriptor));
        if (!descriptor.isOpen()) {
            file_.reset();
            return false;
        }
        const auto identity = identityOf(descriptor);
        if (file_ != nullptr && identity == identity_) {
            return isTrusted_ && !wasTrusted;
        }
        identity_ = identity;
        file_ = VnodeSource::make(std::move(descriptor),
                                  DISPATCH_VNODE_WRITE | DISPATCH_VNODE_EXTEND | DISPATCH_VNODE_ATTRIB |
                                      DISPATCH_VNODE_DELETE | DISPATCH_VNODE_RENAME | DISPATCH_VNODE_REVOKE,
                                  [this](unsigned long events) { fileChanged(events); });
        if (file_ != nullptr) {
            folderWatch_.reset();
        }
        return file_ != nullptr && isTrusted_;
    }

    void watchFolder() {
        Descriptor descriptor(open(folder_.c_str(), O_EVTONLY | O_DIRECTORY | O_CLOEXEC));
        if (descriptor.isOpen()) {
            folderWatch_ = VnodeSource::make(std::move(descriptor), DISPATCH_VNODE_WRITE | DISPATCH_VNODE_ATTRIB,
                                             [this](unsigned long) { folderChanged(); });
        }
    }

    void fileChanged(unsigned long events) {
        constexpr unsigned long written = DISPATCH_VNODE_WRITE | DISPATCH_VNODE_EXTEND;
        const bool isOther = (events & ~written) != 0 && follow();
        if (isOther || (isTrusted_ && (events & written) != 0)) {
            announce();
        }
    }

    void folderChanged() {
        if (follow()) {
            announce();
        }
    }

    /// As a task of the run loop, because the main queue delivers nothing until a handler returns.
    void announce() {
        if (std::exchange(isAnnounced_, true)) {
            return;
        }
        runLoop_.post([weak = weak_from_this()] {
            if (const auto self = weak.lock()) {
                // Reset it first: a write during the call is a new event.
                self->isAnnounced_ = false;
                self->handler_();
            }
        });
    }

    RunLoop& runLoop_;
    const std::string path_;
    const std::string folder_;
    const FileEvents::Handler handler_;
    std::unique_ptr<VnodeSource> file_;
    std::unique_ptr<VnodeSource> folderWatch_;
    FileIdentity identity_;
    bool isTrusted_ = false;
    bool isAnnounced_ = false;
};

/// The caller's handle: the watch itself may be inside a callback when it is cancelled.
class OwnedWatch final : public FileEventSource {
public:
    explicit OwnedWatch(std::shared_ptr<PathWatch> watch) : watch_(std::move(watch)) {}

private:
    std::shared_ptr<PathWatch> watch_;
};

}  // namespace

std::unique_ptr<FileEventSource> MacFileEvents::watchWrites(const std::string& path, Handler handler) {
    auto watch = std::make_shared<PathWatch>(runLoop_, path, std::move(handler));
    if (!watch->start()) {
        return nullptr;
    }
    return std::make_unique<OwnedWatch>(std::move(watch));
}

}  // namespace kestro
