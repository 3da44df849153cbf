#pragma once

#include "core/platform/file_events.h"

namespace kestro {

/// What file events do with trusted files (see `openTrusted`) on every POSIX system; how a file is watched
/// differs.
class TrustedFileEvents : public FileEvents {
public:
    void createIfMissing(const std::string& path) final;
    std::optional<std::string> read(const std::string& path) final;
    void truncate(const std::string& path) final;
};

}  // namespace kestro
