#pragma once

#include "platform/posix/trusted_file_events.h"

namespace kestro {

class RunLoop;

/// File events through inotify(7). Each watch waits on a separate thread, which sleeps until something happens and
/// calls back through the run loop. All writes before the callback are coalesced into one call.
class LinuxFileEvents final : public TrustedFileEvents {
public:
    explicit LinuxFileEvents(RunLoop& runLoop) : runLoop_(runLoop) {}

    [[nodiscard]] std::unique_ptr<FileEventSource> watchWrites(const std::string& path, Handler handler) override;

private:
    RunLoop& runLoop_;
};

}  // namespace kestro
