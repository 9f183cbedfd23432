/*
 * statistics.h - the three records that counters are read in: which counter stands where. A 64-bit counter that stands
 * in a 32-bit word wraps there.
 *
 *     queue, qos_queue_stats              octets_tx, octets_rx, octets_dropped, pkts_tx, pkts_rx, pkts_dropped: sent,
 *                                         received, dropped. pkts_out_standing: frames waiting. mem_blks_in_use: blocks
 *                                         of 256 octets that these take. word9: 0.
 *     PCEP outbound, ebcom_pcep_stats     out_cnt0: frames sent. out_cnt1: octets sent. The rest: 0; what was dropped
 *                                         on the way out is counted by the queue that dropped it.
 *     PCEP inbound, ebcom_pcep_stats      in_cnt0: frames received. in_cnt1: octets received. in_word0: frames dropped.
 *                                         in_cnt2: octets dropped. The rest: 0.
 *     service, ebcom_global_stats         as GlobalStatistics below.
 */
#ifndef SOFTNODE_STATISTICS_H
#define SOFTNODE_STATISTICS_H

#include "softnode/common/counters.h"
#include "softnode/platform.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace softnode
{

/* What the 256 octets of an ebcom_global_stats hold. */
struct GlobalStatistics {
    std::uint64_t frames_received = 0;
    std::uint64_t octets_received = 0;
    std::uint64_t frames_sent = 0;
    std::uint64_t octets_sent = 0;
    std::uint64_t frames_dropped = 0;
    std::uint64_t octets_dropped = 0;
    std::uint64_t paths = 0;
    std::uint64_t pceps = 0;
    std::uint64_t groups = 0;
    std::array<std::uint64_t, 23> reserved{};
};
static_assert(sizeof(GlobalStatistics) == sizeof(ebcom_global_stats));

/* How many of them there are. */
struct Population {
    std::uint64_t paths = 0;
    std::uint64_t pceps = 0;
    std::uint64_t groups = 0;
};

qos_queue_stats queue_statistics(const Counters &counters, const Waiting &waiting);
ebcom_pcep_stats pcep_statistics(const Counters &counters);
ebcom_global_stats global_statistics(const Counters &counters, const Population &population);

/* A counter of a record: its name, and how to read it there. The record need not be aligned. */
struct Field {
    const char *name;
    std::uint64_t (*in)(const void *record);
};

/* The named counters of a record, in the order to show them. */
struct Block {
    const char *title;
    std::span<const Field> fields;
};

extern const Block global_block;   /* of an ebcom_global_stats */
extern const Block inbound_block;  /* of an ebcom_pcep_inbound_stats */
extern const Block outbound_block; /* of an ebcom_pcep_outbound_stats */

} // namespace softnode

#endif
