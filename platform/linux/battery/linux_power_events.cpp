#include "platform/linux/battery/linux_power_events.h"

#include "core/platform/run_loop.h"

#include <linux/netlink.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

namespace kestro {

namespace {

/// Shared with the callbacks that the thread has posted: the watch may end before they run.
struct Announcement {
    std::function<void()> handler;
    std::atomic<bool> isPosted = false;
};

class KernelEventSource final : public PowerEventSource {
public:
    KernelEventSource(RunLoop& runLoop, Descriptor events, Descriptor stop, std::function<void()> handler)
        : runLoop_(runLoop),
          events_(std::move(events)),
          stop_(std::move(stop)),
          announcement_(std::make_shared<Announcement>()) {
        announcement_->handler = std::move(handler);
        thread_ = std::thread([this] { wait(); });
    }

    ~KernelEventSource() override {
        const std::uint64_t one = 1;
        while (write(stop_.get(), &one, sizeof one) < 0 && errno == EINTR) {
        }
        thread_.join();
    }

private:
    void wait() {
        std::array<pollfd, 2> waiting{{{events_.get(), POLLIN, 0}, {stop_.get(), POLLIN, 0}}};
        while (true) {
            const int ready = poll(waiting.data(), waiting.size(), -1);
            if ((ready < 0 && errno != EINTR) || waiting[1].revents != 0) {
                return;
            }
            if (ready > 0 && !consume()) {
                return;
            }
        }
    }

    /// False: the source is broken.
    bool consume() {
        std::array<char, 8192> buffer;
        const ssize_t length = recv(events_.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (length == 0 || (length < 0 && errno != EAGAIN && errno != EINTR && errno != ENOBUFS)) {
            return false;
        }
        // The kernel dropped events: one of them may have been ours.
        const bool isOverflow = length < 0 && errno == ENOBUFS;
        if (isOverflow || (length > 0 && isPowerSupplyEvent({buffer.data(), static_cast<std::size_t>(length)}))) {
            announce();
        }
        return true;
    }

    void announce() {
        if (announcement_->isPosted.exchange(true)) {
            return;
        }
        runLoop_.post([weak = std::weak_ptr(announcement_)] {
            if (const auto announcement = weak.lock()) {
                // Reset it first: an event during the call is a new one.
                announcement->isPosted = false;
                announcement->handler();
            }
        });
    }

    RunLoop& runLoop_;
    const Descriptor events_;
    const Descriptor stop_;
    const std::shared_ptr<Announcement> announcement_;
    std::thread thread_;
};

}  // namespace

bool isPowerSupplyEvent(std::string_view event) {
    constexpr std::string_view wanted = "SUBSYSTEM=power_supply";
    while (!event.empty()) {
        const auto end = event.find('\0');
        if (event.substr(0, end) == wanted) {
            return true;
        }
        event.remove_prefix(end == std::string_view::npos ? event.size() : end + 1);
    }
    return false;
}

Descriptor LinuxPowerEvents::openKernelEvents() {
    constexpr std::uint32_t kernelGroup = 1;
    Descriptor events(socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, NETLINK_KOBJECT_UEVENT));
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = kernelGroup;
    if (events.isOpen() && bind(events.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        events.close();
    }
    return events;
}

std::unique_ptr<PowerEventSource> LinuxPowerEvents::watch(std::function<void()> handler) {
    Descriptor events = open_();
    Descriptor stop(eventfd(0, EFD_CLOEXEC));
    if (!events.isOpen() || !stop.isOpen()) {
        return nullptr;
    }
    try {
        return std::make_unique<KernelEventSource>(runLoop_, std::move(events), std::move(stop),
                                                   std::move(handler));
    } catch (const std::system_error&) {  // no thread can be created
        return nullptr;
    }
}

}  // namespace kestro
