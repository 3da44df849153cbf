#include "platform/desktop/lock_set.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kestro {

namespace {

/// The pauses before a refusing service is asked again double each time. While nothing is held, the longest one
/// repeats.
constexpr std::chrono::milliseconds firstPause = std::chrono::seconds(2);
constexpr int mostDoublings = 6;

}  // namespace

LockSet::LockSet(LockServices& services, LockWish wish, std::function<void()> onChange)
    : services_(services), wish_(std::move(wish)), onChange_(std::move(onChange)) {
    retry_.setSingleShot(true);
    QObject::connect(&retry_, &QTimer::timeout, &retry_, [this] {
        ++retries_;
        forgetRefusals();
        changed();
    });
    update();
}

LockSet::State LockSet::state() const {
    if (isFulfilled()) {
        return State::held;
    }
    if (wasHeld_) {
        return State::lost;
    }
    return isAny(LockState::asking) || !services_.isKnown() ? State::asking : State::refused;
}

std::vector<LockMechanism> LockSet::holders() const {
    std::vector<LockMechanism> held;
    for (const auto& entry : entries_) {
        if (entry.lock->state() == LockState::held) {
            held.push_back(entry.mechanism);
        }
    }
    std::ranges::sort(held);
    return held;
}

void LockSet::poll() {
    for (const auto& entry : entries_) {
        entry.lock->poll();
    }
    update();
}

void LockSet::ownersChanged() {
    retries_ = 0;
    retry_.stop();
    changed();
}

void LockSet::confirm() {
    forgetRefusals();
    for (const auto& entry : entries_) {
        entry.lock->confirm();
    }
    changed();
}

void LockSet::forgetRefusals() {
    std::erase_if(entries_, [](const Entry& entry) { return entry.lock->state() == LockState::refused; });
}

void LockSet::changed() {
    update();
    onChange_();
}

void LockSet::update() {
    std::erase_if(entries_,
                  [this](const Entry& entry) { return entry.owner != services_.owner(entry.mechanism); });
    while (addMissing()) {
    }
    wasHeld_ = wasHeld_ || isFulfilled();
    planRetry();
    if (isAny(LockState::asking)) {
        return;
    }
    const auto wanted = plan();
    std::erase_if(entries_, [&wanted](const Entry& entry) {
        return entry.lock->state() == LockState::held && std::ranges::count(wanted, entry.mechanism) == 0;
    });
}

void LockSet::planRetry() {
    const bool isWorthwhile = retries_ < mostDoublings || !isAny(LockState::held);
    if (isAny(LockState::refused) && wasHeld_ && isWorthwhile && !retry_.isActive()) {
        retry_.start(firstPause * (1 << std::min(retries_, mostDoublings)));
    }
}

/// True if a refusal has changed the plan.
bool LockSet::addMissing() {
    if (!services_.isKnown()) {
        return false;
    }
    bool isRefused = false;
    for (const auto mechanism : plan()) {
        if (entryOf(mechanism) == nullptr) {
            auto lock = services_.ask(mechanism, wish_, [this] { changed(); });
            isRefused = isRefused || lock->state() == LockState::refused;
            entries_.push_back({mechanism, services_.owner(mechanism), std::move(lock)});
        }
    }
    return isRefused;
}

const LockSet::Entry* LockSet::entryOf(LockMechanism mechanism) const {
    const auto found = std::ranges::find(entries_, mechanism, &Entry::mechanism);
    return found == entries_.end() ? nullptr : &*found;
}

std::vector<LockMechanism> LockSet::plan() const {
    return plannedMechanisms(wish_, services_.session(), [this](LockMechanism mechanism) {
        const Entry* const entry = entryOf(mechanism);
        return !services_.owner(mechanism).isEmpty() &&
               (entry == nullptr || entry->lock->state() != LockState::refused);
    });
}

bool LockSet::isAny(LockState state) const {
    return std::ranges::any_of(entries_, [state](const Entry& entry) { return entry.lock->state() == state; });
}

bool LockSet::isFulfilled() const {
    return fulfils(holders(), wish_, services_.session());
}

}  // namespace kestro
