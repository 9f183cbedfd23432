/*
 * statistics.h - the records that counters are read in. Which counter has which place:
 * softnode/softnode.h. A 64-bit counter in a 32-bit word wraps there.
 */
#ifndef SOFTNODE_STATISTICS_H
#define SOFTNODE_STATISTICS_H

#include "softnode/common/counters.h"
#include "softnode/platform.h"
#include "softnode/softnode.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace softnode
{

/* How many objects there are. */
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
