#include "tests/platform/linux/support.h"

#include <filesystem>

namespace kestro::test {
namespace {

std::filesystem::path inside(const std::string& root, std::string_view path) {
    return std::filesystem::path(root) / std::filesystem::path(path).relative_path();
}

}  // namespace

TemporaryTree& TemporaryTree::write(std::string_view path, std::string_view content) {
    directory_.write(std::filesystem::path(path).relative_path().string(), content);
    return *this;
}

TemporaryTree& TemporaryTree::remove(std::string_view path) {
    std::filesystem::remove_all(inside(root_, path));
    return *this;
}

TemporaryTree& TemporaryTree::rename(std::string_view from, std::string_view to) {
    std::filesystem::rename(inside(root_, from), inside(root_, to));
    return *this;
}

TemporaryTree& TemporaryTree::link(std::string_view path, std::string_view target) {
    const auto place = inside(root_, path);
    std::filesystem::create_directories(place.parent_path());
    std::filesystem::create_directory_symlink(inside(root_, target).lexically_relative(place.parent_path()),
                                              place);
    return *this;
}

TemporaryTree& TemporaryTree::copyFrom(std::string_view machine) {
    using Options = std::filesystem::copy_options;
    std::filesystem::copy(fixture(machine), root_, Options::recursive | Options::copy_symlinks);
    return *this;
}

}  // namespace kestro::test
