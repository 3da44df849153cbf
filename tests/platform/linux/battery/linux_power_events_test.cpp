#include "platform/linux/battery/linux_power_events.h"

#include "core/platform/run_loop.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <array>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace kestro {
namespace {

using namespace std::string_literals;

const std::string plugged =
    "change@/devices/LNXSYSTM:00/ACPI0003:00/power_supply/AC\0ACTION=change\0"
    "DEVPATH=/devices/LNXSYSTM:00/ACPI0003:00/power_supply/AC\0"
    "SUBSYSTEM=power_supply\0POWER_SUPPLY_NAME=AC\0POWER_SUPPLY_ONLINE=1\0SEQNUM=4711\0"s;

TEST(IsPowerSupplyEvent, RecognizesTheSubsystemOnly) {
    EXPECT_TRUE(isPowerSupplyEvent(plugged));
    EXPECT_TRUE(isPowerSupplyEvent("SUBSYSTEM=power_supply"));
    for (const auto& other : {""s, "\0\0"s, "SUBSYSTEM=power_supply_old"s, "X=SUBSYSTEM=power_supply"s,
                              "add@/block/sda\0SUBSYSTEM=block\0"s}) {
        EXPECT_FALSE(isPowerSupplyEvent(other)) << other;
    }
}

/// Collects posted tasks from any thread.
class PostedTasks final : public RunLoop {
public:
    void post(std::function<void()> task) override {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
        arrived_.notify_all();
    }
    std::unique_ptr<RunLoopTimer> scheduleRepeating(std::chrono::milliseconds, std::function<void()>) override {
        return nullptr;
    }
    void runInBackground(TaskPriority, std::function<void()>) override {}

    void waitForTask() {
        std::unique_lock lock(mutex_);
        arrived_.wait(lock, [this] { return !tasks_.empty(); });
    }

    /// Waits for a task and runs every one that has been posted.
    void run() {
        waitForTask();
        std::vector<std::function<void()>> tasks;
        {
            const std::lock_guard lock(mutex_);
            tasks.swap(tasks_);
        }
        for (const auto& task : tasks) {
            task();
        }
    }

private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::vector<std::function<void()>> tasks_;
};

std::array<Descriptor, 2> ends;

Descriptor openPair() {
    std::array<int, 2> pair{-1, -1};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, pair.data()), 0);
    ends[0] = Descriptor(pair[0]);
    return Descriptor(pair[1]);
}

void announce(const std::string& event) {
    ASSERT_EQ(send(ends[0].get(), event.data(), event.size(), 0), static_cast<ssize_t>(event.size()));
}

TEST(LinuxPowerEvents, AnnounceChangesOfPowerSuppliesOnly) {
    PostedTasks runLoop;
    LinuxPowerEvents events(runLoop, openPair);
    int changes = 0;
    const auto watch = events.watch([&] { ++changes; });
    ASSERT_TRUE(watch);

    announce("add@/block/sda\0SUBSYSTEM=block\0"s);
    announce(plugged);
    runLoop.run();
    EXPECT_EQ(changes, 1);
    announce(plugged);
    runLoop.run();

    EXPECT_EQ(changes, 2);
}

TEST(LinuxPowerEvents, AnnounceNothingAfterTheWatchHasEnded) {
    PostedTasks runLoop;
    LinuxPowerEvents events(runLoop, openPair);
    int changes = 0;
    auto watch = events.watch([&] { ++changes; });

    announce(plugged);
    runLoop.waitForTask();
    watch.reset();
    runLoop.run();

    EXPECT_EQ(changes, 0);
}

TEST(LinuxPowerEvents, AreAbsentWhereTheSourceCannotBeOpened) {
    PostedTasks runLoop;
    LinuxPowerEvents events(runLoop, [] { return Descriptor(); });

    EXPECT_EQ(events.watch([] {}), nullptr);
}

TEST(LinuxPowerEvents, AreAbsentWithoutAFreeDescriptor) {
    PostedTasks runLoop;
    static rlimit former;
    LinuxPowerEvents events(runLoop, [] {
        Descriptor opened = openPair();
        const rlimit none{0, former.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
        return opened;
    });
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &former), 0);

    const auto watch = events.watch([] {});

    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &former), 0);
    EXPECT_EQ(watch, nullptr);
}

}  // namespace
}  // namespace kestro
