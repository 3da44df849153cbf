#pragma once

#include <filesystem>
#include <span>
#include <string_view>

namespace kestro::drills {

/// Something that is in the place of a file.
struct Obstacle {
    std::string_view name;

    /// Makes the obstacle at a free path. False: not possible here, for lack of privileges.
    bool (*make)(const std::filesystem::path& path);

    /// Whether a program may take it for the user's own file.
    bool isUsable;
};

/// Every kind of obstacle. Those in place of text hold a word that must not be obeyed, unless they are usable.
std::span<const Obstacle> allObstacles();

/// Puts an obstacle in the place of whatever is at `path`, at once. False: it cannot be made here.
bool place(const Obstacle& obstacle, const std::filesystem::path& path);

/// Removes whatever is at `path`.
void clear(const std::filesystem::path& path);

}  // namespace kestro::drills
