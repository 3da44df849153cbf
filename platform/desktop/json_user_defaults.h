#pragma once

#include "core/base/lifetime.h"
#include "core/platform/run_loop.h"
#include "core/platform/user_defaults.h"
#include "platform/desktop/preferences_file.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

namespace kestro {

/// The preferences domain in one JSON file; preference_json.h defines its format and PreferencesFile reads and
/// writes it. Values are read once, at construction; later changes to the file by other programs take effect at
/// the next start. The last writer of each key wins, and keys that this program never assigns are preserved.
///
/// Assignments are written in the background at the end of the current turn of the run loop. Those of the
/// following half second are written together when it has passed, so that every change reaches the disk within a
/// second, and `flush` writes the rest before the process ends. A failed write is retried with the next
/// assignment, and otherwise after a second, then two, four and so on up to half a minute. Main thread; the run
/// loop outlives it.
class JsonUserDefaults final : public UserDefaults {
public:
    JsonUserDefaults(RunLoop& runLoop, const std::string& path);

    /// Flushes.
    ~JsonUserDefaults() override;
    JsonUserDefaults(const JsonUserDefaults&) = delete;
    JsonUserDefaults& operator=(const JsonUserDefaults&) = delete;

    /// $XDG_CONFIG_HOME/kestro/preferences.json, under ~/.config when the variable is unset or not absolute.
    static std::string defaultPath();

    std::optional<PreferenceValue> object(std::string_view key) const override;
    void set(std::string_view key, PreferenceValue value) override;

    /// Writes everything that has not reached the disk yet. Returns when it is stored or has failed.
    void flush();

    /// Flushes when the process calls `exit` while this object exists, as the toolkit does when the X server
    /// goes away at logout. (When a compositor goes away, the toolkit ends the process immediately.) One object
    /// at a time.
    void flushAtExit();

private:
    void rest();
    void finishRest();
    void awaitRetry();
    void writePending();
    void finishWriting(std::uint64_t sequence, bool stored);

    RunLoop& runLoop_;
    std::shared_ptr<PreferencesFile> file_;  // shared with background tasks
    PreferencesFile::Values values_;
    PreferencesFile::Values pending_;
    PreferencesFile::Values writing_;
    std::uint64_t lastSequence_ = 0;
    std::uint64_t writingSequence_ = 0;       // 0: no background write is under way
    bool isWriteDue_ = false;                 // something was assigned since the last write began
    bool isOverdue_ = false;                  // a write was due while the disk was busy
    bool isResting_ = false;                  // another write would be too soon
    std::chrono::milliseconds retryDelay_{};  // 0: the last write succeeded
    std::unique_ptr<RunLoopTimer> timer_;     // ends the rest, or retries
    Lifetime lifetime_;
};

}  // namespace kestro
