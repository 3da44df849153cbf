#pragma once

#include "platform/macos/owned.h"
#include "platform/posix/descriptor.h"

#include <dispatch/dispatch.h>

#include <functional>
#include <memory>
#include <utility>

namespace kestro {

/// Watches one open file or folder. Calls back on the main queue with what happened (DISPATCH_VNODE_…), all
/// changes since the last call together. Closes the descriptor once the system no longer uses it. Main thread.
class VnodeSource {
public:
    using Handler = std::function<void(unsigned long events)>;

    /// nullptr: the system refuses to watch it.
    static std::unique_ptr<VnodeSource> make(Descriptor descriptor, unsigned long events, Handler handler);

    /// The handler is not called afterwards.
    ~VnodeSource();
    VnodeSource(const VnodeSource&) = delete;
    VnodeSource& operator=(const VnodeSource&) = delete;

private:
    struct Context;

    explicit VnodeSource(DispatchOwned<dispatch_source_t> source) : source_(std::move(source)) {}

    static void happened(void* context);
    static void cancelled(void* context);

    DispatchOwned<dispatch_source_t> source_;
};

}  // namespace kestro
