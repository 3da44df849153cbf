#include "core/power/keep_awake_manager.h"

#include "core/base/text.h"
#include "core/platform/platform.h"
#include "core/platform/run_loop.h"
#include "core/settings/user_settings.h"

#include <fmt/format.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <utility>

namespace kestro {

namespace {

constexpr std::uint32_t levelOn = 255;
constexpr const char* assertionName = "Kestro Keep-Awake Active";

using Seconds = std::chrono::duration<double>;

}  // namespace

KeepAwakeManager::KeepAwakeManager(const Platform& platform, UserSettings& settings)
    : isActive(false),
      currentDuration(KeepAwakeDuration::indefinite),
      targetMode(settings.keepAwakeTargetMode.get()),
      platform_(platform),
      settings_(settings) {
    platform_.powerAssertions.setRevocationHandler([this](PowerAssertionID id) {
        if (assertionID_ != 0 && id == assertionID_) {
            assertionID_ = 0;
            deactivate();
        }
    });
}

KeepAwakeManager::~KeepAwakeManager() {
    platform_.powerAssertions.setRevocationHandler({});
    releaseAssertion();
}

KeepAwakeManager& KeepAwakeManager::shared() {
    // Never destroyed: the assertion ends with the process, and views may still be subscribed until then.
    static auto* const manager = new KeepAwakeManager(Platform::current(), UserSettings::shared());
    return *manager;
}

void KeepAwakeManager::activate(KeepAwakeDuration duration, std::optional<KeepAwakeTarget> target) {
    if (target) {
        targetMode.set(*target);
        settings_.keepAwakeTargetMode.set(*target);
    }
    // Release the old assertion before requesting the new one, so that at most one is ever held.
    releaseAssertion();
    timer_.reset();
    const auto created =
        platform_.powerAssertions.create(std::string(assertionType(targetMode.get())), levelOn, assertionName);
    if (!created) {
        return;
    }
    assertionID_ = *created;
    isActive.set(true);
    if (assertionID_ == *created) {
        currentDuration.set(duration);
    }
    if (assertionID_ != *created) {
        return;  // a subscriber ended or restarted the period; keep its change
    }
    const auto length = seconds(duration);
    if (!length) {
        expirationDate_.reset();
        remainingSeconds.set(std::nullopt);
        return;
    }
    expirationDate_ = platform_.clock.wallNow() + std::chrono::duration_cast<WallTime::duration>(Seconds(*length));
    startTimer();
    remainingSeconds.set(length);
}

void KeepAwakeManager::deactivate() {
    releaseAssertion();
    timer_.reset();
    expirationDate_.reset();
    remainingSeconds.set(std::nullopt);
    if (assertionID_ != 0) {
        return;  // a subscriber started a new period; keep it
    }
    isActive.set(false);
}

void KeepAwakeManager::toggle() {
    if (isActive.get()) {
        deactivate();
    } else {
        activate(settings_.defaultKeepAwakeDuration.get());
    }
}

void KeepAwakeManager::setTargetMode(KeepAwakeTarget mode) {
    if (mode == targetMode.get()) {
        return;
    }
    targetMode.set(mode);
    settings_.keepAwakeTargetMode.set(mode);
    if (isActive.get()) {
        activate(currentDuration.get(), mode);
    }
}

void KeepAwakeManager::checkBatterySafeguard(double batteryLevel, bool isCharging) {
    if (settings_.keepAwakeAutoDisableOnBattery.get() && !isCharging && isActive.get() &&
        batteryLevel <= settings_.keepAwakeBatteryThreshold.get()) {
        deactivate();
    }
}

std::string KeepAwakeManager::formattedRemainingTime() const {
    const auto& remaining = remainingSeconds.get();
    if (remaining && *remaining > 0) {
        const auto wholeSeconds = wholeNumber(*remaining);
        const auto minutes = wholeSeconds / 60;
        if (wholeSeconds < 3600) {
            return fmt::format("{}m {:02}s", minutes, wholeSeconds - 60 * minutes);
        }
        return fmt::format("{}h {:02}m", minutes / 60, minutes % 60);
    }
    return isActive.get() ? "Active (∞)" : "Off";
}

void KeepAwakeManager::startTimer() {
    timer_ = platform_.runLoop.scheduleRepeating(std::chrono::seconds(1), [this] { tick(); });
}

void KeepAwakeManager::tick() {
    if (!expirationDate_) {
        timer_.reset();
        return;
    }
    const double remaining = Seconds(*expirationDate_ - platform_.clock.wallNow()).count();
    if (remaining <= 0) {
        deactivate();
    } else {
        remainingSeconds.set(remaining);
    }
}

void KeepAwakeManager::releaseAssertion() {
    if (assertionID_ != 0) {
        platform_.powerAssertions.release(std::exchange(assertionID_, 0));
    }
}

}  // namespace kestro
