#pragma once

#include "core/platform/file_events.h"

namespace kestro {

class RunLoop;

/// File events through inotify(7). Each watch waits on a separate thread, which sleeps until something happens and
/// calls back through the run loop. All writes before the callback are coalesced into one call.
class LinuxFileEvents final : public FileEvents {
public:
    explicit LinuxFileEvents(RunLoop& runLoop) : runLoop_(runLoop) {}

    void createIfMissing(const std::string& path) override;
    [[nodiscard]] std::unique_ptr<FileEventSource> watchWrites(const std::string& path, Handler handler) override;
    std::optional<std::string> read(const std::string& path) override;
    void truncate(const std::string& path) override;

private:
    RunLoop& runLoop_;
};

}  // namespace kestro
