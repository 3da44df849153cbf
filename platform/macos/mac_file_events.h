#pragma once

#include "platform/posix/trusted_file_events.h"

namespace kestro {

class RunLoop;

/// File events from descriptors that are open for events only. Watches the file itself, whoever owns it, and its
/// folder only while nothing at the path can be opened, so that other activity there causes no wake-ups. All
/// writes before a callback are coalesced into one call. Main thread; the run loop outlives this object.
class MacFileEvents final : public TrustedFileEvents {
public:
    explicit MacFileEvents(RunLoop& runLoop) : runLoop_(runLoop) {}

    [[nodiscard]] std::unique_ptr<FileEventSource> watchWrites(const std::string& path, Handler handler) override;

private:
    RunLoop& runLoop_;
};

}  // namespace kestro
