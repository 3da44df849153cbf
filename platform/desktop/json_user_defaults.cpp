#include "platform/desktop/json_user_defaults.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace kestro {

namespace {

// Leaves half of the second within which a change must be on the disk to a slow one.
constexpr std::chrono::milliseconds writeInterval{500};
constexpr std::chrono::milliseconds firstRetry = std::chrono::seconds(1);
constexpr std::chrono::milliseconds longestRetry = std::chrono::seconds(30);

// An exit handler can only reach statics.
JsonUserDefaults* flushedAtExit = nullptr;

/// The value of a variable that names a directory; empty unless it is an absolute path.
std::string directoryVariable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && value[0] == '/' ? value : "";
}

std::string homeDirectory() {
    if (auto home = directoryVariable("HOME"); !home.empty()) {
        return home;
    }
    const passwd* user = ::getpwuid(::getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "";
}

}  // namespace

JsonUserDefaults::JsonUserDefaults(RunLoop& runLoop, const std::string& path)
    : runLoop_(runLoop), file_(std::make_shared<PreferencesFile>(path)), values_(file_->load()) {}

JsonUserDefaults::~JsonUserDefaults() {
    if (flushedAtExit == this) {
        flushedAtExit = nullptr;
    }
    flush();
}

std::string JsonUserDefaults::defaultPath() {
    std::string directory = directoryVariable("XDG_CONFIG_HOME");
    if (directory.empty()) {
        directory = homeDirectory() + "/.config";
    }
    return directory + "/kestro/preferences.json";
}

std::optional<PreferenceValue> JsonUserDefaults::object(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void JsonUserDefaults::set(std::string_view key, PreferenceValue value) {
    pending_.insert_or_assign(std::string(key), value);
    values_.insert_or_assign(std::string(key), std::move(value));
    isWriteDue_ = true;
    if (isResting_) {
        return;
    }
    rest();
    runLoop_.post([this, alive = lifetime_.watch()] {
        if (!alive.expired()) {
            writePending();
        }
    });
}

void JsonUserDefaults::flush() {
    timer_.reset();
    isResting_ = false;
    isWriteDue_ = false;
    // Values of an unfinished background write may not have reached the disk yet; newer values take precedence.
    pending_.insert(writing_.begin(), writing_.end());
    writing_.clear();
    writingSequence_ = 0;
    if (!pending_.empty() && file_->store(pending_, ++lastSequence_)) {
        pending_.clear();
    }
}

void JsonUserDefaults::flushAtExit() {
    [[maybe_unused]] static const int registered = std::atexit([] {
        if (flushedAtExit != nullptr) {
            flushedAtExit->flush();
        }
    });
    flushedAtExit = this;
}

void JsonUserDefaults::rest() {
    isResting_ = true;
    // A new timer each time: only its first firing is certain to come within the period.
    timer_ = runLoop_.scheduleRepeating(writeInterval, [this] { finishRest(); });
}

void JsonUserDefaults::finishRest() {
    if (isWriteDue_) {
        writePending();
        rest();
        return;
    }
    isResting_ = false;
    if (retryDelay_.count() > 0) {
        awaitRetry();
    } else {
        timer_.reset();
    }
}

void JsonUserDefaults::awaitRetry() {
    timer_ = runLoop_.scheduleRepeating(retryDelay_, [this] {
        isWriteDue_ = true;
        writePending();
        rest();
    });
}

void JsonUserDefaults::writePending() {
    if (!isWriteDue_) {
        return;
    }
    if (writingSequence_ != 0) {
        isOverdue_ = true;
        return;
    }
    isWriteDue_ = false;
    writing_ = std::exchange(pending_, {});
    writingSequence_ = ++lastSequence_;
    runLoop_.runInBackground(TaskPriority::utility, [this, &runLoop = runLoop_, file = file_, changes = writing_,
                                                     sequence = writingSequence_, alive = lifetime_.watch()] {
        const bool stored = file->store(changes, sequence);
        runLoop.post([this, alive, sequence, stored] {
            if (!alive.expired()) {
                finishWriting(sequence, stored);
            }
        });
    });
}

void JsonUserDefaults::finishWriting(std::uint64_t sequence, bool stored) {
    if (sequence != writingSequence_) {
        return;  // superseded by a flush
    }
    writingSequence_ = 0;
    if (stored) {
        retryDelay_ = {};
    } else {
        pending_.insert(writing_.begin(), writing_.end());
        retryDelay_ = std::clamp(2 * retryDelay_, firstRetry, longestRetry);
        if (!timer_) {
            awaitRetry();  // the write took longer than the rest
        }
    }
    writing_.clear();
    if (std::exchange(isOverdue_, false) && stored) {
        writePending();
    }
}

}  // namespace kestro
