#include "fuzz/requirement.h"
#include "platform/linux/machine/mount_table.h"
#include "platform/linux/machine/storage_volume.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestro {
namespace {

void readMounts(std::string_view text) {
    const auto mounts = parseMountInfo(text);
    if (!mounts.empty()) {
        require(mounts.front().point.starts_with('/'));
        require(mountAt(mounts, mounts.front().point) != nullptr);
        require(mountOf(mounts, mounts.front().point) != nullptr);
        isImage(mounts.front());
    }
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kestro::readMounts(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
