#include "tests/platform/macos/fakes/fake_mac.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <thread>
#include <utility>

namespace kestro::fakes {

namespace {

dispatch_queue_s mainQueue;
std::array<dispatch_queue_s, 64> globalQueues;

FakeMac& mac() {
    return FakeMac::current();
}

FakeDispatch& library() {
    return mac().dispatch;
}

FakeDispatch::Source& sourceOf(dispatch_object_t object) {
    return *static_cast<FakeDispatch::Source*>(static_cast<dispatch_source_s*>(object));
}

std::uintptr_t flagsOf(const inotify_event& event, int descriptor) {
    const std::uint32_t mask = event.mask;
    if (event.len > 0) {
        // Within a watched folder.
        return (mask & (IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO)) != 0 ? DISPATCH_VNODE_WRITE : 0;
    }
    std::uintptr_t flags = 0;
    flags |= (mask & IN_MODIFY) != 0 ? DISPATCH_VNODE_WRITE : 0;
    flags |= (mask & IN_ATTRIB) != 0 ? DISPATCH_VNODE_ATTRIB : 0;
    flags |= (mask & IN_MOVE_SELF) != 0 ? DISPATCH_VNODE_RENAME : 0;
    struct stat status {};
    // An open file that is deleted only loses its link.
    flags |= fstat(descriptor, &status) == 0 && status.st_nlink == 0 ? DISPATCH_VNODE_DELETE : 0;
    return flags;
}

/// What has happened to the file since the last call.
std::uintptr_t takeEvents(const FakeDispatch::Source& source) {
    std::uintptr_t flags = 0;
    alignas(inotify_event) std::array<char, 4096> buffer;
    for (ssize_t length = 0; (length = read(source.inotify, buffer.data(), buffer.size())) > 0;) {
        for (ssize_t offset = 0; offset < length;) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + offset, sizeof event);
            offset += static_cast<ssize_t>(sizeof event + event.len);
            flags |= flagsOf(event, source.descriptor);
        }
    }
    return flags & source.mask;
}

bool finishCancellation(FakeDispatch::Source& source) {
    if (!source.isCancelled || source.isFinished) {
        return false;
    }
    source.isFinished = true;
    if (source.cancelHandler != nullptr) {
        source.cancelHandler(source.context);
    }
    return true;
}

bool deliver(FakeDispatch::Source& source) {
    if (!source.isRunning || source.isCancelled) {
        return false;
    }
    source.data = source.signal != 0 ? std::exchange(source.arrivals, 0) : takeEvents(source);
    if (source.data == 0) {
        return false;
    }
    source.handler(source.context);
    return true;
}

}  // namespace

FakeDispatch::FakeDispatch() = default;

FakeDispatch::~FakeDispatch() {
    for (const auto& source : sources) {
        finishCancellation(*source);
    }
}

FakeDispatch::Source::~Source() {
    if (inotify >= 0) {
        close(inotify);
    }
}

void FakeDispatch::raise(int signal) {
    for (const auto& source : sources) {
        source->arrivals += source->signal == signal ? 1 : 0;
    }
}

bool FakeDispatch::runMainQueue() {
    for (std::size_t index = 0; index < sources.size(); ++index) {
        Source& source = *sources[index];
        if (finishCancellation(source) || deliver(source)) {
            std::erase_if(sources, [](const auto& item) { return item->references == 0 && item->isFinished; });
            return true;
        }
    }
    return false;
}

bool FakeDispatch::runWork() {
    Work next;
    {
        const std::scoped_lock guard(mutex);
        if (work.empty()) {
            return false;
        }
        next = work.front();
        work.pop_front();
    }
    std::thread([&next] { next.function(next.context); }).join();
    return true;
}

void FakeDispatch::appendHeld(std::vector<std::string>& all) const {
    if (!groups.empty() || !sources.empty() || !work.empty()) {
        all.emplace_back("groups, sources or work of the dispatch library");
    }
}

}  // namespace kestro::fakes

using namespace kestro::fakes;

extern "C" {

const dispatch_source_type_s _dispatch_source_type_signal{};
const dispatch_source_type_s _dispatch_source_type_vnode{};

dispatch_queue_main_t dispatch_get_main_queue() {
    return &mainQueue;
}

dispatch_queue_global_t dispatch_get_global_queue(std::intptr_t identifier, std::uintptr_t) {
    return &globalQueues.at(static_cast<std::size_t>(identifier));
}

dispatch_time_t dispatch_time(dispatch_time_t, std::int64_t delta) {
    return static_cast<dispatch_time_t>(delta);
}

dispatch_group_t dispatch_group_create() {
    if (mac().fails("dispatch_group_create")) {
        return nullptr;
    }
    library().groups.push_back(std::make_unique<FakeDispatch::Group>());
    return library().groups.back().get();
}

void dispatch_group_async_f(dispatch_group_t group, dispatch_queue_t queue, void* context,
                            dispatch_function_t work) {
    const std::scoped_lock guard(library().mutex);
    library().work.push_back({group, queue - globalQueues.data(), context, work});
}

std::intptr_t dispatch_group_wait(dispatch_group_t, dispatch_time_t timeout) {
    if (library().hangs && timeout != DISPATCH_TIME_FOREVER) {
        return 1;
    }
    while (library().runWork()) {
    }
    return 0;
}

dispatch_source_t dispatch_source_create(dispatch_source_type_t type, std::uintptr_t handle, std::uintptr_t mask,
                                         dispatch_queue_t queue) {
    const bool isKnown = type == DISPATCH_SOURCE_TYPE_VNODE || type == DISPATCH_SOURCE_TYPE_SIGNAL;
    if (mac().fails("dispatch_source_create") || !isKnown || queue != &mainQueue) {
        return nullptr;
    }
    auto source = std::make_unique<FakeDispatch::Source>();
    if (type == DISPATCH_SOURCE_TYPE_SIGNAL) {
        source->signal = static_cast<int>(handle);
        library().sources.push_back(std::move(source));
        return library().sources.back().get();
    }
    source->descriptor = static_cast<int>(handle);
    source->mask = mask;
    source->inotify = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    // By the descriptor, as the real one watches it.
    const auto opened = "/proc/self/fd/" + std::to_string(source->descriptor);
    inotify_add_watch(source->inotify, opened.c_str(),
                      IN_MODIFY | IN_ATTRIB | IN_MOVE_SELF | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO);
    library().sources.push_back(std::move(source));
    return library().sources.back().get();
}

void dispatch_source_set_event_handler_f(dispatch_source_t source, dispatch_function_t handler) {
    sourceOf(source).handler = handler;
}

void dispatch_source_set_cancel_handler_f(dispatch_source_t source, dispatch_function_t handler) {
    sourceOf(source).cancelHandler = handler;
}

std::uintptr_t dispatch_source_get_data(dispatch_source_t source) {
    return sourceOf(source).data;
}

void dispatch_source_cancel(dispatch_source_t source) {
    sourceOf(source).isCancelled = true;
}

void dispatch_set_context(dispatch_object_t object, void* context) {
    sourceOf(object).context = context;
}

void dispatch_resume(dispatch_object_t object) {
    sourceOf(object).isRunning = true;
}

void dispatch_release(dispatch_object_t object) {
    auto& groups = library().groups;
    if (std::erase_if(groups, [object](const auto& group) { return group.get() == object; }) > 0) {
        return;
    }
    const auto found =
        std::ranges::find_if(library().sources, [object](const auto& source) { return source.get() == object; });
    if (found == library().sources.end() || (*found)->references == 0) {
        library().misuse.emplace_back("dispatch_release of something that is not held");
        return;
    }
    if (!(*found)->isRunning || !(*found)->isCancelled) {
        library().misuse.emplace_back("releases a source that is suspended or not cancelled");
    }
    (*found)->references = 0;
}

}  // extern "C"
