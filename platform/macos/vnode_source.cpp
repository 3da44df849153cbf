#include "platform/macos/vnode_source.h"

#include <cstdint>
#include <utility>

namespace kestro {

static_assert(DISPATCH_VNODE_DELETE == 0x1 && DISPATCH_VNODE_WRITE == 0x2 && DISPATCH_VNODE_EXTEND == 0x4 &&
              DISPATCH_VNODE_ATTRIB == 0x8 && DISPATCH_VNODE_RENAME == 0x20 && DISPATCH_VNODE_REVOKE == 0x40);

/// Lives until the source has been cancelled.
struct VnodeSource::Context {
    dispatch_source_t source;
    Descriptor descriptor;
    Handler handler;
};

std::unique_ptr<VnodeSource> VnodeSource::make(Descriptor descriptor, unsigned long events, Handler handler) {
    DispatchOwned<dispatch_source_t> source(dispatch_source_create(DISPATCH_SOURCE_TYPE_VNODE,
                                                                   static_cast<std::uintptr_t>(descriptor.get()),
                                                                   events, dispatch_get_main_queue()));
    if (!source) {
        return nullptr;
    }
    auto context = std::make_unique<Context>(Context{source.get(), std::move(descriptor), std::move(handler)});
    dispatch_set_context(source.get(), context.release());
    dispatch_source_set_event_handler_f(source.get(), &happened);
    dispatch_source_set_cancel_handler_f(source.get(), &cancelled);
    dispatch_resume(source.get());
    return std::unique_ptr<VnodeSource>(new VnodeSource(std::move(source)));
}

VnodeSource::~VnodeSource() {
    dispatch_source_cancel(source_.get());
}

void VnodeSource::happened(void* context) {
    // The handler may cancel the source; the context outlives the call.
    const auto& self = *static_cast<const Context*>(context);
    self.handler(dispatch_source_get_data(self.source));
}

void VnodeSource::cancelled(void* context) {
    delete static_cast<Context*>(context);
}

}  // namespace kestro
