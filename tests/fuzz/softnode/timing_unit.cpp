/*
 * timing_unit.cpp - calls of the timing unit.
 */
#include "caller.h"

#include "platform/ork.h"
#include "platform/vorn_tu.h"
#include "softnode/softnode.h"

#include <array>

namespace
{

void open_connection(Caller &caller)
{
    void *opened = nullptr;
    if (vorn_tu_init(caller.maybe(opened)) == ORK_OK)
        caller.keep(connection, opened);
}

void subscribe(Caller &caller)
{
    in_order(vorn_tu_subscribe_adjnpuoffs, {caller.pointer(connection), caller.seldom() ? 1 : 0});
}

/* Never for an event that does not come: nobody else is there to post it. */
void wait_event(Caller &caller)
{
    softnode_faults_clear();
    void *const on = caller.pointer(connection);
    vorn_tu_subscribe_adjnpuoffs(on, 0);
    in_order(softnode_timing_event_post, {caller.input.take<std::uint32_t>(), caller.input.take<std::int32_t>()});
    vorn_tu_event *taken = nullptr;
    if (vorn_tu_wait_event(on, caller.maybe(taken)) == ORK_OK)
        caller.keep(event, taken);
}

void free_event(Caller &caller)
{
    auto *given = static_cast<vorn_tu_event *>(caller.pointer(event));
    in_order(vorn_tu_free_event, {caller.pointer(connection), caller.maybe(given)});
}

void read_offset(Caller &caller)
{
    vorn_tu_nputimeoffset reading{};
    in_order(vorn_tu_get_nputimeoffset, {caller.pointer(connection), caller.seldom() ? 1U : 0U, caller.maybe(reading)});
}

constexpr std::array<Step, 5> steps{{open_connection, subscribe, wait_event, free_event, read_offset}};

} // namespace

std::span<const Step> timing_unit_steps()
{
    return steps;
}
