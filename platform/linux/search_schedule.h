#pragma once

#include "core/platform/clock.h"
#include "platform/linux/kernel_files.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace kestro {

/// Decides when the devices below a directory of /sys are searched for again: when an entry came or went, which
/// is checked every ten seconds, and soon after a reading found its device gone, less and less often while that
/// does not help. Allocates nothing. One thread at a time.
class SearchSchedule {
public:
    enum class Due : std::uint8_t {
        nothing,
        check,   ///< the same devices as before; a good moment for what need not be done at every tick
        search,  ///< a new search
    };

    explicit SearchSchedule(std::string directory) : directory_(std::move(directory)) {}

    /// What is to be done now; the first call asks for a search.
    Due due(MonotonicTime now);

    /// A reading found its device gone.
    void noteGone() { isAnyGone_ = true; }

private:
    DirectoryWatch directory_;
    std::optional<MonotonicTime> checked_;
    MonotonicTime searched_{};
    std::chrono::seconds retryPeriod_{2};
    bool isAnyGone_ = false;
};

}  // namespace kestro
