/*
 * vorn_tu.cpp - the timing-unit client, over the process-wide node.
 */
#include "softnode/closed/codes.h"
#include "softnode/instance/closed_call.h"
#include "softnode/instance/timing_user.h"
#include "softnode/platform.h"

using namespace softnode;

namespace
{

template <class Work> int32_t timing_call(const char *function, Work work)
{
    return closed_call<int32_t>(function, [&](Node &node) { return driver_kit_code(work(node.timing)); });
}

/* Lets go of the node until the connection has an event. */
Refusal wait_for_event(TimingUnit &timing, Handle connection, User user, vorn_tu_event *&event)
{
    Instance &here = instance();
    if (const Refusal refusal = timing.take_event(connection, user, event))
        return refusal;
    while (!event) {
        here.user_moved.notify_all();
        here.event_posted.wait(here.mutex);
        /* A connection that was good before the wait goes away with the node only. */
        if (timing.take_event(connection, user, event))
            return Refusal::shut_down;
    }
    return Refusal::granted;
}

} // namespace

/* A thread whose call is made to fail has joined all the same: softnode_timing_settle() waits for it to end. */
int32_t vorn_tu_init(void **handle)
{
    const User user = this_thread();
    with_node([&](Node &node) { node.timing.join(user); });
    return timing_call(__func__, [&](TimingUnit &timing) {
        if (!handle)
            return Refusal::invalid;
        *handle = pointer_of(timing.open(user));
        return Refusal::granted;
    });
}

int32_t vorn_tu_subscribe_adjnpuoffs(void *handle, int32_t domain)
{
    return timing_call(__func__, [&](TimingUnit &timing) { return timing.subscribe(handle_of(handle), domain); });
}

int32_t vorn_tu_wait_event(void *handle, vorn_tu_event **event)
{
    const User user = this_thread();
    return timing_call(__func__, [&](TimingUnit &timing) {
        if (!event)
            return Refusal::invalid;
        vorn_tu_event *taken = nullptr;
        if (const Refusal refusal = wait_for_event(timing, handle_of(handle), user, taken))
            return refusal;
        *event = taken;
        return Refusal::granted;
    });
}

int32_t vorn_tu_free_event(void *handle, vorn_tu_event **event)
{
    return timing_call(__func__, [&](TimingUnit &timing) {
        if (!event)
            return Refusal::invalid;
        if (const Refusal refusal = timing.give_back(handle_of(handle), *event))
            return refusal;
        *event = nullptr;
        return Refusal::granted;
    });
}

int32_t vorn_tu_get_nputimeoffset(void *handle, uint32_t zero, vorn_tu_nputimeoffset *reading)
{
    return timing_call(__func__, [&](TimingUnit &timing) {
        return zero == 0 && reading ? timing.read(handle_of(handle), *reading) : Refusal::invalid;
    });
}
