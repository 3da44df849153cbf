#pragma once

// Only what platform/macos uses, with the types and values of Apple's libdispatch as C++ sees them. Implemented by
// the fakes.

#include <sys/qos.h>

#include <cstdint>

struct dispatch_object_s {};
struct dispatch_queue_s : dispatch_object_s {};
struct dispatch_group_s : dispatch_object_s {};
struct dispatch_source_s : dispatch_object_s {};
struct dispatch_source_type_s {};

using dispatch_object_t = dispatch_object_s*;
using dispatch_queue_t = dispatch_queue_s*;
using dispatch_queue_main_t = dispatch_queue_s*;
using dispatch_queue_global_t = dispatch_queue_s*;
using dispatch_group_t = dispatch_group_s*;
using dispatch_source_t = dispatch_source_s*;
using dispatch_source_type_t = const dispatch_source_type_s*;
using dispatch_function_t = void (*)(void* context);
using dispatch_time_t = std::uint64_t;

#define DISPATCH_TIME_NOW (0ULL)
#define DISPATCH_TIME_FOREVER (~0ULL)

#define DISPATCH_VNODE_DELETE 0x1
#define DISPATCH_VNODE_WRITE 0x2
#define DISPATCH_VNODE_EXTEND 0x4
#define DISPATCH_VNODE_ATTRIB 0x8
#define DISPATCH_VNODE_RENAME 0x20
#define DISPATCH_VNODE_REVOKE 0x40
#define DISPATCH_SOURCE_TYPE_SIGNAL (&_dispatch_source_type_signal)
#define DISPATCH_SOURCE_TYPE_VNODE (&_dispatch_source_type_vnode)

extern "C" {

extern const dispatch_source_type_s _dispatch_source_type_signal;
extern const dispatch_source_type_s _dispatch_source_type_vnode;

dispatch_queue_main_t dispatch_get_main_queue();
dispatch_queue_global_t dispatch_get_global_queue(std::intptr_t identifier, std::uintptr_t flags);
dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t delta);

dispatch_group_t dispatch_group_create();
void dispatch_group_async_f(dispatch_group_t group, dispatch_queue_t queue, void* context,
                            dispatch_function_t work);
std::intptr_t dispatch_group_wait(dispatch_group_t group, dispatch_time_t timeout);

dispatch_source_t dispatch_source_create(dispatch_source_type_t type, std::uintptr_t handle, std::uintptr_t mask,
                                         dispatch_queue_t queue);
void dispatch_source_set_event_handler_f(dispatch_source_t source, dispatch_function_t handler);
void dispatch_source_set_cancel_handler_f(dispatch_source_t source, dispatch_function_t handler);
std::uintptr_t dispatch_source_get_data(dispatch_source_t source);
void dispatch_source_cancel(dispatch_source_t source);

void dispatch_set_context(dispatch_object_t object, void* context);
void dispatch_resume(dispatch_object_t object);
void dispatch_release(dispatch_object_t object);

}  // extern "C"
