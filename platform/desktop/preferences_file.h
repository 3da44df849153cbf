#pragma once

#include "core/platform/user_defaults.h"
#include "platform/desktop/file_replacement.h"
#include "platform/desktop/preference_json.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace kestro {

/// The preferences on disk: one JSON object in one file. Any thread; calls are serialised. Every failure is
/// silent: what cannot be read is absent, what cannot be written is reported as not stored.
///
/// The file is replaced as a whole, so that a reader or a crash sees either the old contents or the new ones, and
/// under a lock, so that two writers do not undo each other's changes. A symbolic link is preserved: everything
/// here applies to the file behind it, which is created if missing. Missing directories are created with mode
/// 0700.
///
/// The file is formatted for people, with one line per value, or as a single line if only that is within the
/// limits.
///
/// A file that is not a JSON object, or exceeds the limits of preference_json.h, is renamed to NAME.damaged or,
/// if that exists, to NAME.damaged.2 and so on up to 9; if no name is free, the file stays and nothing is
/// stored. Anything that is not a regular file or cannot be opened is left alone, too.
class PreferencesFile {
public:
    using Values = std::map<std::string, PreferenceValue, std::less<>>;

    explicit PreferencesFile(std::string path) : path_(std::move(path)) {}

    /// The values of all keys whose value has a known form. Removes the temporary files of processes that died
    /// while writing.
    Values load();

    /// Reads the file again and writes it with `changes` applied. Other keys keep their current value in the
    /// file, even in forms unknown to this program; a number that parsePreferenceJson does not represent exactly
    /// is written as it was parsed, one beyond the range of a double as it was. A file that has vanished or become
    /// damaged in the meantime is rewritten from its last known contents. Does nothing if `sequence` is not above
    /// those already stored. False: not stored.
    bool store(const Values& changes, std::uint64_t sequence);

private:
    enum class State { absent, usable, damaged, untouchable };

    /// Replaces the file by its current contents with `changes` applied. `superseded`: it changed meanwhile.
    Replacement merge(const std::string& name, const Values& changes);
    static State read(const std::string& name, PreferenceJson& document);
    static bool setAside(const std::string& name);

    std::mutex mutex_;
    std::string path_;
    PreferenceJson lastSeen_ = PreferenceJson::object();
    std::uint64_t storedSequence_ = 0;
};

}  // namespace kestro
