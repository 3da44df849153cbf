#pragma once

#include "core/platform/clock.h"
#include "platform/linux/kernel/kernel_files.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace kestro {

/// Decides when to search the devices below a /sys directory again: when an entry was added or removed, checked
/// every ten seconds, and soon after a reading found its device gone, with increasing delays while that does not
/// help. Allocates nothing. One thread at a time.
class SearchSchedule {
public:
    enum class Due : std::uint8_t {
        nothing,
        check,   ///< same devices as before; do any work not needed on every tick
        search,  ///< a new search
    };

    explicit SearchSchedule(std::string directory) : directory_(std::move(directory)) {}

    /// What to do now; the first call requests a search.
    Due due(MonotonicTime now);

    /// Reports that a reading found its device gone.
    void noteGone() { isAnyGone_ = true; }

private:
    DirectoryWatch directory_;
    std::optional<MonotonicTime> checked_;
    MonotonicTime searched_{};
    std::chrono::seconds retryPeriod_{2};
    bool isAnyGone_ = false;
};

}  // namespace kestro
