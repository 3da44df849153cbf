#include "platform/simulated/simulated_file_events.h"

#include <algorithm>
#include <vector>

namespace kestro {

struct SimulatedFileEvents::Watch {
    std::string path;
    Handler handler;
    bool isRaised = false;
    bool isCancelled = false;
};

struct SimulatedFileEvents::WatchList {
    std::vector<std::shared_ptr<Watch>> running;
};

class SimulatedFileEvents::Source final : public FileEventSource {
public:
    Source(std::shared_ptr<WatchList> list, std::shared_ptr<Watch> watch)
        : list_(std::move(list)), watch_(std::move(watch)) {}
    ~Source() override {
        watch_->isCancelled = true;
        std::erase(list_->running, watch_);
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

private:
    std::shared_ptr<WatchList> list_;
    std::shared_ptr<Watch> watch_;
};

SimulatedFileEvents::SimulatedFileEvents(RunLoop& runLoop)
    : runLoop_(runLoop), watches_(std::make_shared<WatchList>()) {}

SimulatedFileEvents::~SimulatedFileEvents() = default;

void SimulatedFileEvents::createIfMissing(const std::string& path) {
    if (!createFailure.strikes()) {
        files_.try_emplace(path);
    }
}

std::unique_ptr<FileEventSource> SimulatedFileEvents::watchWrites(const std::string& path, Handler handler) {
    if (watchFailure.strikes()) {
        return nullptr;
    }
    if (!files_.contains(path)) {
        createIfMissing(path);
    }
    if (!files_.contains(path)) {
        return nullptr;
    }
    auto watch = std::make_shared<Watch>(Watch{path, std::move(handler)});
    watches_->running.push_back(watch);
    return std::make_unique<Source>(watches_, std::move(watch));
}

std::optional<std::string> SimulatedFileEvents::read(const std::string& path) {
    if (readFailure.strikes() || !files_.contains(path)) {
        return std::nullopt;
    }
    return files_[path].substr(0, longestRead);
}

void SimulatedFileEvents::truncate(const std::string& path) {
    if (!truncateFailure.strikes() && files_.contains(path)) {
        write(path, {});
    }
}

void SimulatedFileEvents::write(const std::string& path, const std::string& text) {
    files_[path] = text;
    raise(path);
}

void SimulatedFileEvents::remove(const std::string& path) {
    files_.erase(path);
    if (std::ranges::find(watches_->running, path, &Watch::path) != watches_->running.end()) {
        createIfMissing(path);
    }
}

std::optional<std::string> SimulatedFileEvents::contents(const std::string& path) const {
    const auto found = files_.find(path);
    return found == files_.end() ? std::nullopt : std::optional(found->second);
}

std::int64_t SimulatedFileEvents::watches() const {
    return std::ssize(watches_->running);
}

void SimulatedFileEvents::raise(const std::string& path) {
    for (const auto& watch : watches_->running) {
        if (watch->path != path || watch->isRaised) {
            continue;
        }
        watch->isRaised = true;
        runLoop_.post([watch] {
            watch->isRaised = false;
            if (!watch->isCancelled) {
                watch->handler();
            }
        });
    }
}

}  // namespace kestro
