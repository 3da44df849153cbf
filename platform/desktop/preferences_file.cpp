#include "platform/desktop/preferences_file.h"

#include "platform/desktop/file_replacement.h"
#include "platform/desktop/overflowing_numbers.h"
#include "platform/posix/bounded_read.h"
#include "platform/posix/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

namespace kestro {

namespace {

constexpr int maximumDamagedFiles = 9;
constexpr int maximumAttempts = 10;
constexpr int maximumLinks = 40;  // the kernel's limit

/// Like rename, but never replaces anything.
bool renameToFreeName(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    // Some file systems do not support this; there, check first and then use the plain rename.
    struct stat status {};
    return errno == EINVAL && ::lstat(to.c_str(), &status) != 0 && errno == ENOENT &&
           ::rename(from.c_str(), to.c_str()) == 0;
}

/// The name behind the symbolic links at `path`, whether that file exists or not; nullopt: a loop, or a link
/// that cannot be read.
std::optional<std::string> nameBehindLinks(std::filesystem::path path) {
    for (int link = 0; link <= maximumLinks; ++link) {
        struct stat status {};
        if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) {
            return path;
        }
        std::error_code error;
        const std::filesystem::path target = std::filesystem::read_symlink(path, error);
        if (error) {
            return std::nullopt;
        }
        path = path.parent_path() / target;
    }
    return std::nullopt;
}

/// The indented form, or the compact one if only that is within the limits; nullopt: neither is.
std::optional<std::string> boundedText(const PreferenceJson& document) {
    for (const int indent : {2, -1}) {
        std::string text = dumpWithOverflowingNumbers(document, indent) + "\n";
        if (isBoundedPreferenceText(text)) {
            return text;
        }
    }
    return std::nullopt;
}

}  // namespace

PreferencesFile::Values PreferencesFile::load() {
    const std::lock_guard lock(mutex_);
    auto document = PreferenceJson::object();
    const auto name = nameBehindLinks(path_);
    if (name) {
        removeAbandonedReplacements(*name);
    }
    if (name && read(*name, document) == State::damaged) {
        setAside(*name);
    }
    Values values;
    for (const auto& [key, json] : document.items()) {
        if (auto value = decodePreference(json)) {
            values.insert_or_assign(key, std::move(*value));
        }
    }
    lastSeen_ = std::move(document);
    return values;
}

bool PreferencesFile::store(const Values& changes, std::uint64_t sequence) {
    const std::lock_guard lock(mutex_);
    if (sequence <= storedSequence_) {
        return true;
    }
    const auto name = nameBehindLinks(path_);
    const std::string directory = name ? std::filesystem::path(*name).parent_path() : std::filesystem::path();
    if (!name || !makeDirectories(directory)) {
        return false;
    }
    const DirectoryLock lockedAgainstOthers(directory);
    auto result = Replacement::superseded;
    // The lock does not stop a program that does not know it, such as one that synchronises files.
    for (int attempt = 0; attempt < maximumAttempts && result == Replacement::superseded; ++attempt) {
        result = merge(*name, changes);
    }
    if (result != Replacement::done) {
        return false;
    }
    storedSequence_ = sequence;
    return true;
}

Replacement PreferencesFile::merge(const std::string& name, const Values& changes) {
    auto version = versionOf(name);
    auto document = PreferenceJson::object();
    const State state = read(name, document);
    if (state == State::untouchable || (state == State::damaged && !setAside(name))) {
        return Replacement::failed;
    }
    if (state == State::damaged) {
        version = std::nullopt;
    }
    if (state != State::usable) {
        document = lastSeen_;
    }
    for (const auto& [key, value] : changes) {
        document[key] = encodePreference(value);
    }
    const auto text = boundedText(document);
    const auto result = text ? replaceFileAtomically(name, *text, version) : Replacement::failed;
    if (result == Replacement::done) {
        lastSeen_ = std::move(document);
    }
    return result;
}

PreferencesFile::State PreferencesFile::read(const std::string& name, PreferenceJson& document) {
    const Descriptor file(::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen()) {
        return errno == ENOENT ? State::absent : State::untouchable;
    }
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return State::untouchable;
    }
    // One byte more than the limit, to detect a file that is too large.
    const auto text = readAtMost(file.get(), maximumPreferenceBytes + 1);
    if (!text) {
        return State::untouchable;
    }
    if (text->empty()) {
        return State::absent;
    }
    auto parsed = parsePreferenceJson(*text);
    if (!parsed || !parsed->is_object()) {
        return State::damaged;
    }
    document = std::move(*parsed);
    return State::usable;
}

bool PreferencesFile::setAside(const std::string& name) {
    const std::string first = name + ".damaged";
    bool moved = renameToFreeName(name, first);
    for (int number = 2; !moved && number <= maximumDamagedFiles; ++number) {
        moved = renameToFreeName(name, first + "." + std::to_string(number));
    }
    return moved;
}

}  // namespace kestro
