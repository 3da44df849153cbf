#pragma once

#include "core/platform/file_events.h"
#include "core/platform/run_loop.h"
#include "platform/simulated/simulated_failure.h"

#include <map>
#include <memory>

namespace kestro {

/// Files in memory. A write posts an event to the main queue for every watcher of the path; writes before its
/// delivery are coalesced. Truncating also counts as a write.
class SimulatedFileEvents final : public FileEvents {
public:
    explicit SimulatedFileEvents(RunLoop& runLoop);
    ~SimulatedFileEvents() override;

    void createIfMissing(const std::string& path) override;
    [[nodiscard]] std::unique_ptr<FileEventSource> watchWrites(const std::string& path, Handler handler) override;
    std::optional<std::string> read(const std::string& path) override;
    void truncate(const std::string& path) override;

    SimulatedFailure createFailure;
    SimulatedFailure watchFailure;
    SimulatedFailure readFailure;  ///< also simulates an untrusted file
    SimulatedFailure truncateFailure;

    /// Simulates another process writing the file, creating it if necessary.
    void write(const std::string& path, const std::string& text);

    /// Simulates another process deleting the file; a watch creates it again.
    void remove(const std::string& path);

    /// The file's contents; nullopt: there is no file.
    std::optional<std::string> contents(const std::string& path) const;

    std::int64_t watches() const;

private:
    struct Watch;
    struct WatchList;
    class Source;

    void raise(const std::string& path);

    RunLoop& runLoop_;
    std::map<std::string, std::string> files_;
    std::shared_ptr<WatchList> watches_;
};

}  // namespace kestro
