/*
 * control_traffic.cpp - the control interface: traffic in virtual time, over the process-wide node.
 */
#include "softnode/softnode.h"

#include "softnode/closed/codes.h"
#include "softnode/instance/instance.h"

#include <bit>
#include <cstdint>

using namespace softnode;

namespace
{

softnode_frame handed_out(const FrameReport &frame)
{
    return {.identity = frame.identity,
            .queue = static_cast<uint64_t>(frame.queue),
            .entered = frame.entered,
            .left = frame.left,
            .fate = frame.fate == Fate::sent ? SOFTNODE_FRAME_SENT : SOFTNODE_FRAME_DROPPED,
            .reason = static_cast<softnode_drop_reason>(frame.reason)};
}

} // namespace

int32_t softnode_traffic_offer(const uint8_t mac[6], uint64_t frames, uint32_t octets_per_frame)
{
    if (!mac)
        return driver_kit_code(Refusal::invalid);
    return with_node([&](Node &node) { return driver_kit_code(node.offer(mac_at(mac), {frames, octets_per_frame})); });
}

int32_t softnode_traffic_send(uint32_t id, uint64_t frames, uint32_t octets_per_frame)
{
    return with_node([&](Node &node) { return driver_kit_code(node.send(id, {frames, octets_per_frame})); });
}

uint64_t softnode_traffic_dropped(softnode_drop_reason reason)
{
    static_assert(static_cast<int>(Drop::no_queue) == SOFTNODE_DROP_NO_QUEUE);
    if (std::bit_cast<std::uint32_t>(reason) > SOFTNODE_DROP_NO_QUEUE) // in C any number is one
        return 0;
    return with_node([&](Node &node) { return node.ebcom.dropped(static_cast<Drop>(reason)).frames; });
}

int32_t softnode_traffic_offer_one(const uint8_t mac[6], uint32_t octets, uint64_t identity)
{
    if (!mac || identity == 0)
        return driver_kit_code(Refusal::invalid);
    return with_node([&](Node &node) { return driver_kit_code(node.offer(mac_at(mac), {1, octets, identity})); });
}

void softnode_traffic_watch(softnode_frame_watcher *watcher, void *context)
{
    with_node([&](Node &node) {
        node.watcher = nullptr;
        if (watcher)
            node.watcher = [watcher, context](const FrameReport &frame) {
                const softnode_frame handed = handed_out(frame);
                watcher(context, &handed);
            };
    });
}

void softnode_time_advance(uint64_t nanoseconds)
{
    with_node([&](Node &node) { node.advance(nanoseconds); });
}

uint64_t softnode_time()
{
    return with_node([](Node &node) { return node.clock.now(); });
}
