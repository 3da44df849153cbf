#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/base/lifetime.h"
#include "core/platform/run_loop.h"
#include "core/platform/user_defaults.h"
#include "platform/desktop/preferences_file.h"

namespace kestro {

/// The preferences domain in one JSON file; preference_json.h has its form and PreferencesFile how it is read
/// and written. Values are read once, at construction; a change that somebody else makes to the file later is
/// seen at the next start. Each key belongs to whoever wrote it last, and keys that this program never assigns
/// stay as they are.
///
/// What is assigned in one turn of the run loop is written at its end, in the background; what follows within a
/// second is written together when that has passed, and what is left by `flush` before the process ends. When
/// the disk refuses, the values are kept in memory and written with the next assignment. Main thread; the run
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

    /// Writes what has not reached the disk yet, now. Returns when it is there or was refused.
    void flush();

    /// Flushes when the process calls `exit` while this object lives, as the toolkit does when the X server goes
    /// away at logout. (When a compositor goes away it ends the process on the spot.) One object at a time.
    void flushAtExit();

private:
    void writeOrRest();
    void writePending();
    void finishWriting(std::uint64_t sequence, bool stored);

    RunLoop& runLoop_;
    std::shared_ptr<PreferencesFile> file_;  // shared with background tasks
    PreferencesFile::Values values_;
    PreferencesFile::Values pending_;
    PreferencesFile::Values writing_;
    std::uint64_t lastSequence_ = 0;
    std::uint64_t writingSequence_ = 0;    // 0: no background write is under way
    bool isWriteDue_ = false;              // assigned to since the last write began
    std::unique_ptr<RunLoopTimer> timer_;  // runs while a write would come too soon after another
    Lifetime lifetime_;
};

}  // namespace kestro
