#pragma once

#include <map>
#include <memory>

#include "core/platform/file_events.h"
#include "core/platform/run_loop.h"
#include "platform/simulated/simulated_failure.h"

namespace kestro {

/// Files in memory. A write raises an event in the main queue of everybody who watches the path; writes that
/// follow each other before it is delivered share one. Truncating is a write too.
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
    SimulatedFailure readFailure;  ///< also a file that is not to be trusted
    SimulatedFailure truncateFailure;

    /// Another process writes the file, which need not exist.
    void write(const std::string& path, const std::string& text);

    /// Another process deletes the file; its watchers stay.
    void remove(const std::string& path);

    /// What the file holds; nullopt: there is no file.
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
