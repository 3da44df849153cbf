#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "core/platform/user_defaults.h"
#include "platform/desktop/preference_json.h"

namespace kestro {

/// The preferences on disk: one JSON object in one file. Any thread; calls wait for each other. Every failure
/// is silent: what cannot be read is absent, what cannot be written is reported as not stored.
///
/// The file is replaced as a whole (temporary file beside it, fsync, rename, fsync of the directory, mode
/// 0600), so that a reader or a crash sees the old contents or the new ones. A symbolic link is kept: all this,
/// and what follows, is done to the file behind it, which is made where it is missing. Missing directories are
/// made with mode 0700.
///
/// The file is written for people to read, with a line for each value, or as one line when only that keeps
/// within the bounds.
///
/// A file that is not a JSON object, or larger than the bounds of preference_json.h, is renamed to NAME.damaged
/// or, where such files exist already, to NAME.damaged.2 and so on up to 9; when no name is free, the file stays
/// and nothing is stored. Something that is not a regular file, or cannot be opened, is left alone likewise.
class PreferencesFile {
public:
    using Values = std::map<std::string, PreferenceValue, std::less<>>;

    explicit PreferencesFile(std::string path) : path_(std::move(path)) {}

    /// The values of every key that holds one of a known form.
    Values load();

    /// Reads the file again and writes it with `changes` applied: other keys keep what stands there now,
    /// whoever wrote it, also in forms unknown to this program; a number that parsePreferenceJson does not keep
    /// exactly is written as it was read. A file that has vanished or was damaged in the meantime is written from
    /// what was last seen in it. A call with a `sequence` that is not above those already stored does nothing.
    /// False: not stored.
    bool store(const Values& changes, std::uint64_t sequence);

private:
    enum class State { absent, usable, damaged, untouchable };

    static State read(const std::string& name, PreferenceJson& document);
    static bool setAside(const std::string& name);

    std::mutex mutex_;
    std::string path_;
    PreferenceJson lastSeen_ = PreferenceJson::object();
    std::uint64_t storedSequence_ = 0;
};

/// Replaces the file at `path` by `contents` as described above, links not followed. False: the old file stands.
bool replaceFileAtomically(const std::string& path, const std::string& contents);

}  // namespace kestro
