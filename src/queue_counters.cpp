// The layouts of the texts, whose labels readers rely on.
#include "queue_counters.h"

#include <cstring>

using namespace kel;

namespace
{

constexpr text_line queue_lines[] = {
    {"mem_blks_in_use", offsetof(ebcom_queue_stats, mem_blks_in_use)},
    {"pkts_out_standing", offsetof(ebcom_queue_stats, pkts_out_standing)},
    {"pkts_dropped", offsetof(ebcom_queue_stats, pkts_dropped)},
    {"pkts_tx", offsetof(ebcom_queue_stats, pkts_tx)},
    {"pkts_rq", offsetof(ebcom_queue_stats, pkts_rx)}, // readers know it by this label
};

constexpr text_line queue_lines_2[] = {
    {"mem_blks_in_use", offsetof(ebcom_queue_stats, mem_blks_in_use)},
    {"pkts_out_standing", offsetof(ebcom_queue_stats, pkts_out_standing)},
    {"pkts_dropped", offsetof(ebcom_queue_stats, pkts_dropped)},
    {"pkts_tx", offsetof(ebcom_queue_stats, pkts_tx)},
    {"pkts_rx", offsetof(ebcom_queue_stats, pkts_rx)},
    {"octets_dropped", offsetof(ebcom_queue_stats, octets_dropped)},
    {"octets_tx", offsetof(ebcom_queue_stats, octets_tx)},
    {"octets_rx", offsetof(ebcom_queue_stats, octets_rx)},
    {"max_burst_size", offsetof(ebcom_queue_stats, max_burst_size)},
    {"current_burst_size", offsetof(ebcom_queue_stats, current_burst_size)},
};

} // namespace

constexpr text_layout kel::queue_layout = {"EBCOM Queue statistics", queue_lines};
constexpr text_layout kel::queue_layout_2 = {"EBCOM Queue statistics version 2", queue_lines_2};

// The low half comes first: x86-64 is little-endian.
uint32_t kel::low_word(const ebcom_queue_stats &stats, const text_line &line)
{
    uint32_t word = 0;
    memcpy(&word, reinterpret_cast<const char *>(&stats) + line.offset, sizeof word);
    return word;
}

void kel::copy_counters(const qos_queue_stats &from, ebcom_queue_stats &to)
{
    to.mem_blks_in_use = from.mem_blks_in_use;
    to.pkts_out_standing = from.pkts_out_standing;
    to.pkts_dropped = from.pkts_dropped;
    to.pkts_tx = from.pkts_tx;
    to.pkts_rx = from.pkts_rx;
    to.octets_dropped = from.octets_dropped;
    to.octets_tx = from.octets_tx;
    to.octets_rx = from.octets_rx;
}
