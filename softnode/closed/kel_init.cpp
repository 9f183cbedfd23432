/*
 * kel_init.cpp - the companion initialisation library, over the process-wide node.
 */
#include "softnode/closed/codes.h"
#include "softnode/closed/statistics.h"
#include "softnode/common/facts.h"
#include "softnode/instance/closed_call.h"
#include "softnode/platform.h"

#include <cinttypes>
#include <cstdio>

using namespace softnode;

namespace
{

template <class Work> uint32_t companion_call(const char *function, Work work)
{
    return closed_call<uint32_t>(function, [&](Node &node) { return companion_code(work(node)); });
}

} // namespace

/* Writes the whole record, so that nothing of an earlier attachment is left in it. */
uint32_t kel_init_attach(kel_attach_info *attach)
{
    return companion_call(__func__, [&](Node &node) {
        if (!attach)
            return Refusal::invalid;
        *attach = {};
        attach->sys_handle = pointer_of(node.attachment.system());
        attach->ehsfp_target = static_cast<uint64_t>(node.attachment.ehsfp_target());
        attach->ork_handle = pointer_of(node.attachment.driver_kit());
        return Refusal::granted;
    });
}

uint32_t kel_init_eventdev_dev_id_ebcom_get(uint16_t *eth_dev_id)
{
    return companion_call(__func__, [&](Node &) {
        if (!eth_dev_id)
            return Refusal::invalid;
        *eth_dev_id = facts::event_device;
        return Refusal::granted;
    });
}

uint32_t kel_init_eventdev_vsi_ebcom_get(kel_vsi_t *vsi)
{
    return companion_call(__func__, [&](Node &) {
        if (!vsi)
            return Refusal::invalid;
        *vsi = facts::event_device_vsi;
        return Refusal::granted;
    });
}

uint32_t kel_init_qos_queue_add(const kel_init_qos_queue_params *params, uint32_t five, void *scheduler,
                                uint16_t eth_dev_id, void **queue)
{
    return companion_call(__func__, [&](Node &node) {
        if (!params || !queue)
            return Refusal::invalid;
        Handle added = Handle::null;
        if (const Refusal refusal = node.qos.add_queue(*params, five, handle_of(scheduler), eth_dev_id, added))
            return refusal;
        *queue = pointer_of(added);
        return Refusal::granted;
    });
}

uint32_t kel_init_qos_queue_rem(void *queue)
{
    return companion_call(__func__, [&](Node &node) { return node.remove_queue(handle_of(queue)); });
}

uint32_t kel_init_qos_queue_stats_get(void *queue, qos_queue_stats *stats)
{
    return companion_call(__func__, [&](Node &node) {
        if (!stats)
            return Refusal::invalid;
        if (const Refusal refusal = node.qos.check_queue(handle_of(queue)))
            return refusal;
        const Queue &found = node.qos.queues().at(handle_of(queue));
        *stats = queue_statistics(found.counters, found.waiting());
        return Refusal::granted;
    });
}

/*
 * The destination is a stdio stream, and stays the caller's. Indexes 1 to count are asked for, outside the node: the
 * accessors are the caller's and may call in here.
 */
uint32_t kel_init_dump_ork_handles(void *destination, const char *title, uint32_t count,
                                   uint32_t (*id_get)(uint32_t index), uint64_t (*handle_get)(uint32_t index))
{
    const bool given = destination && title && id_get && handle_get;
    if (const uint32_t rc =
            companion_call(__func__, [given](Node &) { return given ? Refusal::granted : Refusal::invalid; }))
        return rc;

    FILE *const stream = static_cast<FILE *>(destination);
    bool written = std::fprintf(stream, "%s\n", title) >= 0;
    for (uint32_t before = 0; before < count; ++before)
        if (const uint32_t id = id_get(before + 1))
            written &= std::fprintf(stream, "  %3" PRIu32 "  0x%" PRIx64 "\n", id, handle_get(before + 1)) >= 0;
    return written ? KEL_RC_OK : KEL_RC_FAILED;
}
