#pragma once

// Written for the checks from public documentation: what our sources use of this library, and no more.
// Its objects are Objective-C objects, so that ARC releases them.

#include <cstdint>
#include <ctime>

#pragma clang assume_nonnull begin

@protocol OS_dispatch_queue
@end
@protocol OS_dispatch_source
@end
@protocol OS_dispatch_queue_attr
@end

using dispatch_queue_t = id<OS_dispatch_queue>;
using dispatch_source_t = id<OS_dispatch_source>;
using dispatch_queue_attr_t = id<OS_dispatch_queue_attr>;
using dispatch_object_t = id;
using dispatch_function_t = void (*)(void* _Nullable context);
using dispatch_time_t = std::uint64_t;
using dispatch_source_type_t = const struct dispatch_source_type_s*;

extern "C" {
extern const struct dispatch_source_type_s _dispatch_source_type_timer;

dispatch_queue_t dispatch_queue_create(
    const char* _Nullable label, dispatch_queue_attr_t _Nullable attributes);
dispatch_source_t dispatch_source_create(dispatch_source_type_t type, std::uintptr_t handle,
    std::uintptr_t mask, dispatch_queue_t _Nullable queue);
void dispatch_source_set_event_handler_f(dispatch_source_t source, dispatch_function_t _Nullable handler);
void dispatch_source_set_timer(
    dispatch_source_t source, dispatch_time_t start, std::uint64_t interval, std::uint64_t leeway);
void dispatch_source_cancel(dispatch_source_t source);
void dispatch_activate(dispatch_object_t object);
void dispatch_set_context(dispatch_object_t object, void* _Nullable context);
void dispatch_async_f(dispatch_queue_t queue, void* _Nullable context, dispatch_function_t work);
void dispatch_sync_f(dispatch_queue_t queue, void* _Nullable context, dispatch_function_t work);
dispatch_time_t dispatch_walltime(const struct timespec* _Nullable when, std::int64_t delta);
}

#define DISPATCH_SOURCE_TYPE_TIMER (&_dispatch_source_type_timer)
#define DISPATCH_QUEUE_SERIAL nullptr
#define DISPATCH_TIMER_STRICT 0x1
#define DISPATCH_TIME_FOREVER (~0ull)

#pragma clang assume_nonnull end
