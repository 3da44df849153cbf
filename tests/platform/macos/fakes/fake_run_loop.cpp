#include "tests/platform/macos/fakes/fake_mac.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace kestro::fakes {

namespace {

// The epoch of CFAbsoluteTime has nothing to do with the uptime.
constexpr double bootDate = 770'000'000;
int powerSourceMemory = 0;
int runLoopMemory = 0;
int centerMemory = 0;

FakeMac& mac() {
    return FakeMac::current();
}

FakeRunLoop& runLoop() {
    return mac().runLoop;
}

double now() {
    return bootDate + static_cast<double>(mac().kernel.uptime) / 1e9;
}

FakeRunLoop::Timer& timerOf(CFRunLoopTimerRef timer) {
    return runLoop().timers.at(mac().objects.use(timer, FakeType::timer).index);
}

FakeRunLoop::Source& sourceOf(CFRunLoopSourceRef source) {
    return runLoop().sources.at(mac().objects.use(source, FakeType::source).index);
}

std::string textOf(CFStringRef string) {
    return std::get<std::string>(mac().objects.use(string, FakeType::string).value);
}

}  // namespace

void FakeRunLoop::runPending() {
    while (runSources() || mac().dispatch.runMainQueue() || deliverPosting()) {
    }
}

bool FakeRunLoop::runSources() {
    bool ranAny = false;
    for (std::size_t index = 0; index < sources.size(); ++index) {
        Source& source = sources[index];
        if (source.isAdded && source.isValid && takeSignal(source)) {
            source.context.perform(source.context.info);
            ranAny = true;
        }
    }
    return ranAny;
}

bool FakeRunLoop::takeSignal(Source& source) {
    const std::scoped_lock guard(mutex);
    return std::exchange(source.isSignalled, false);
}

bool FakeRunLoop::deliverPosting() {
    if (postings.empty()) {
        return false;
    }
    const Posting posting = std::move(postings.front());
    postings.pop_front();
    auto* const name = mac().objects.makeString(posting.name);
    auto* const userInfo = posting.hasUserInfo ? mac().objects.makeValue({posting.userInfo}) : nullptr;
    const auto listeners = observers;
    for (const auto& listener : listeners) {
        if (listener.name == posting.name) {
            listener.callback(CFNotificationCenterGetDistributedCenter(), listener.observer,
                              reinterpret_cast<CFStringRef>(name), nullptr,
                              reinterpret_cast<CFDictionaryRef>(userInfo));
        }
    }
    mac().objects.release(name);
    if (userInfo != nullptr) {
        mac().objects.release(userInfo);
    }
    return true;
}

FakeRunLoop::Timer* FakeRunLoop::dueBy(double time) {
    Timer* earliest = nullptr;
    for (Timer& timer : timers) {
        if (timer.isAdded && timer.isValid && !timer.isFiring && timer.fireDate <= time &&
            (earliest == nullptr || timer.fireDate < earliest->fireDate)) {
            earliest = &timer;
        }
    }
    return earliest;
}

void FakeRunLoop::advance(std::chrono::nanoseconds duration) {
    const auto end = mac().kernel.uptime + static_cast<std::uint64_t>(duration.count());
    runPending();
    while (Timer* const timer = dueBy(bootDate + static_cast<double>(end) / 1e9)) {
        const auto due = static_cast<std::uint64_t>(std::max(0.0, (timer->fireDate - bootDate) * 1e9));
        mac().kernel.uptime = std::max(mac().kernel.uptime, std::min(due, end));
        const double fired = timer->fireDate;
        ++timer->firings;
        timer->isFiring = true;
        timer->callback(nullptr, timer->info);
        timer->isFiring = false;
        // A date from within the call counts only if it is later than the one that has come.
        if (timer->fireDate <= fired) {
            timer->fireDate = fired + timer->interval;
        }
        runPending();
    }
    mac().kernel.uptime = std::max(mac().kernel.uptime, end);
}

void FakeRunLoop::stall(std::chrono::nanoseconds duration) {
    mac().kernel.uptime += static_cast<std::uint64_t>(duration.count());
}

CFRunLoopSourceRef FakeRunLoop::powerSource() {
    return reinterpret_cast<CFRunLoopSourceRef>(&powerSourceMemory);
}

void FakeRunLoop::appendHeld(std::vector<std::string>& all) const {
    const auto valid = [](const auto& item) { return item.isAdded && item.isValid; };
    if (std::ranges::any_of(timers, valid) || std::ranges::any_of(sources, valid)) {
        all.emplace_back("timers or sources in the run loop");
    }
    if (!observers.empty()) {
        all.emplace_back("observers of notifications");
    }
}

}  // namespace kestro::fakes

using namespace kestro::fakes;

extern "C" {

const CFRunLoopMode kCFRunLoopCommonModes = reinterpret_cast<CFRunLoopMode>(&kCFRunLoopCommonModes);
const CFStringRef kCFPreferencesCurrentApplication =
    reinterpret_cast<CFStringRef>(&kCFPreferencesCurrentApplication);

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
    return now();
}

CFRunLoopRef CFRunLoopGetMain() {
    return reinterpret_cast<CFRunLoopRef>(&runLoopMemory);
}

void CFRunLoopWakeUp(CFRunLoopRef) {
    const std::scoped_lock guard(runLoop().mutex);
    ++runLoop().wakeUps;
}

void CFRunLoopAddTimer(CFRunLoopRef, CFRunLoopTimerRef timer, CFRunLoopMode mode) {
    timerOf(timer).isAdded = mode == kCFRunLoopCommonModes;
}

void CFRunLoopAddSource(CFRunLoopRef, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    if (source == FakeRunLoop::powerSource()) {
        mac().ioKit.powerClient.value().isDelivered = mode == kCFRunLoopCommonModes;
        return;
    }
    sourceOf(source).isAdded = mode == kCFRunLoopCommonModes;
}

CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef, CFAbsoluteTime fireDate, CFTimeInterval interval,
                                       CFOptionFlags, CFIndex, CFRunLoopTimerCallBack callback,
                                       CFRunLoopTimerContext* context) {
    if (mac().fails("CFRunLoopTimerCreate")) {
        return nullptr;
    }
    auto* const object = mac().objects.make(FakeType::timer);
    object->index = runLoop().timers.size();
    runLoop().timers.push_back(
        {.callback = callback, .info = context->info, .fireDate = fireDate, .interval = interval});
    return reinterpret_cast<CFRunLoopTimerRef>(object);
}

void CFRunLoopTimerSetNextFireDate(CFRunLoopTimerRef timer, CFAbsoluteTime fireDate) {
    timerOf(timer).fireDate = fireDate;
}

void CFRunLoopTimerSetTolerance(CFRunLoopTimerRef timer, CFTimeInterval tolerance) {
    timerOf(timer).tolerance = tolerance;
}

void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer) {
    timerOf(timer).isValid = false;
}

CFRunLoopSourceRef CFRunLoopSourceCreate(CFAllocatorRef, CFIndex, CFRunLoopSourceContext* context) {
    if (mac().fails("CFRunLoopSourceCreate")) {
        return nullptr;
    }
    auto* const object = mac().objects.make(FakeType::source);
    object->index = runLoop().sources.size();
    runLoop().sources.push_back({.context = *context});
    return reinterpret_cast<CFRunLoopSourceRef>(object);
}

void CFRunLoopSourceSignal(CFRunLoopSourceRef source) {
    const std::scoped_lock guard(runLoop().mutex);
    sourceOf(source).isSignalled = true;
}

void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source) {
    sourceOf(source).isValid = false;
}

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) {
    const auto found = runLoop().preferences.find(textOf(key));
    if (mac().fails("CFPreferencesCopyAppValue") || application != kCFPreferencesCurrentApplication ||
        found == runLoop().preferences.end()) {
        return nullptr;
    }
    return mac().objects.makeValue(found->second);
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application) {
    if (application == kCFPreferencesCurrentApplication) {
        ++runLoop().preferenceWrites;
        runLoop().preferences[textOf(key)] = FakeObjects::valueOf(mac().objects.use(value));
    }
}

Boolean CFPreferencesAppSynchronize(CFStringRef) {
    ++runLoop().synchronizations;
    if (mac().fails("CFPreferencesAppSynchronize")) {
        return false;
    }
    runLoop().storedPreferences = runLoop().preferences;
    return true;
}

CFNotificationCenterRef CFNotificationCenterGetDistributedCenter() {
    return mac().fails("CFNotificationCenterGetDistributedCenter")
               ? nullptr
               : reinterpret_cast<CFNotificationCenterRef>(&centerMemory);
}

void CFNotificationCenterAddObserver(CFNotificationCenterRef, const void* observer,
                                     CFNotificationCallback callback, CFStringRef name, const void* object,
                                     CFNotificationSuspensionBehavior suspensionBehavior) {
    if (object != nullptr || suspensionBehavior != CFNotificationSuspensionBehaviorDeliverImmediately) {
        runLoop().misuse.emplace_back("observes only some postings");
    }
    runLoop().observers.push_back({const_cast<void*>(observer), callback, textOf(name)});
}

void CFNotificationCenterRemoveEveryObserver(CFNotificationCenterRef, const void* observer) {
    std::erase_if(runLoop().observers, [&](const auto& item) { return item.observer == observer; });
}

void CFNotificationCenterPostNotification(CFNotificationCenterRef, CFNotificationName name, const void* object,
                                          CFDictionaryRef userInfo, Boolean) {
    FakeRunLoop::Posting posting{.name = textOf(name), .userInfo = {}, .hasUserInfo = userInfo != nullptr};
    if (object != nullptr) {
        runLoop().misuse.emplace_back("posts with a sender");
    }
    if (userInfo != nullptr) {
        const auto value = FakeObjects::valueOf(mac().objects.use(userInfo, FakeType::dictionary));
        posting.userInfo = std::get<FakeDictionary>(value.content);
    }
    runLoop().postings.push_back(std::move(posting));
}

}  // extern "C"
