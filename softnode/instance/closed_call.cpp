/*
 * closed_call.cpp - what fault rules and trials make of a call.
 */
#include "softnode/instance/closed_call.h"

#include "softnode/instance/timing_user.h"
#include "softnode/platform.h"

namespace softnode
{

namespace
{

/* Lets go of the node until the call may go on. False when the node was switched off meanwhile. */
bool wait_for_release(std::size_t function)
{
    Instance &here = instance();
    TimingUnit &timing = here.node.timing;
    const Handle system = here.node.attachment.system(); /* another one after every reset */
    const User user = this_thread();
    timing.hold(user, function);
    here.user_moved.notify_all();
    here.released.wait(here.mutex, [&] { return !timing.holds(user); });
    return here.node.attachment.system() == system;
}

} // namespace

std::optional<std::int64_t> begin_call(std::size_t function)
{
    Instance &here = instance();
    const FaultEffects effects = here.faults.begin_call(function);
    here.node.advance(effects.latency);
    if (effects.block && !wait_for_release(function))
        return ORK_SHUTDOWN; /* only functions of the timing unit block */
    if (here.trial)
        if (const auto result = here.trial->begin_call(this_thread(), function))
            return result;
    return effects.result;
}

} // namespace softnode
