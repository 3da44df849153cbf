#include "platform/linux/kernel/search_schedule.h"

#include <algorithm>

namespace kestro {
namespace {

constexpr std::chrono::seconds checkPeriod{10};
constexpr std::chrono::seconds firstRetry{2};
constexpr std::chrono::seconds lastRetry{64};

}  // namespace

SearchSchedule::Due SearchSchedule::due(MonotonicTime now) {
    const bool isCheckDue = !checked_ || now - *checked_ >= checkPeriod;
    const bool isRetryDue = isAnyGone_ && now - searched_ >= retryPeriod_;
    if (!isCheckDue && !isRetryDue) {
        return Due::nothing;
    }
    checked_ = now;
    const bool hasChanged = directory_.hasChanged();
    if (!hasChanged && !isRetryDue) {
        retryPeriod_ = isAnyGone_ ? retryPeriod_ : firstRetry;
        return Due::check;
    }
    retryPeriod_ = hasChanged ? firstRetry : std::min(retryPeriod_ * 2, lastRetry);
    searched_ = now;
    isAnyGone_ = false;
    return Due::search;
}

}  // namespace kestro
