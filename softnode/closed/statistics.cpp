/*
 * statistics.cpp - counters into records, and records back into named counters.
 */
#include "softnode/closed/statistics.h"

#include <array>
#include <bit>
#include <cstring>

namespace softnode
{

namespace
{

template <class Record, class Value> std::uint64_t read(const void *octets, Value Record::*counter)
{
    Record record;
    std::memcpy(&record, octets, sizeof record);
    return record.*counter;
}

template <auto Counter> std::uint64_t in(const void *record)
{
    return read(record, Counter);
}

constexpr std::array<Field, 9> global_fields{{
    {"frames_received", in<&softnode_global_statistics::frames_received>},
    {"octets_received", in<&softnode_global_statistics::octets_received>},
    {"frames_sent", in<&softnode_global_statistics::frames_sent>},
    {"octets_sent", in<&softnode_global_statistics::octets_sent>},
    {"frames_dropped", in<&softnode_global_statistics::frames_dropped>},
    {"octets_dropped", in<&softnode_global_statistics::octets_dropped>},
    {"paths", in<&softnode_global_statistics::paths>},
    {"pceps", in<&softnode_global_statistics::pceps>},
    {"groups", in<&softnode_global_statistics::groups>},
}};

constexpr std::array<Field, 4> inbound_fields{{
    {"frames_received", in<&ebcom_pcep_inbound_stats::in_cnt0>},
    {"octets_received", in<&ebcom_pcep_inbound_stats::in_cnt1>},
    {"frames_dropped", in<&ebcom_pcep_inbound_stats::in_word0>},
    {"octets_dropped", in<&ebcom_pcep_inbound_stats::in_cnt2>},
}};

constexpr std::array<Field, 2> outbound_fields{{
    {"frames_sent", in<&ebcom_pcep_outbound_stats::out_cnt0>},
    {"octets_sent", in<&ebcom_pcep_outbound_stats::out_cnt1>},
}};

std::uint32_t low_word(std::uint64_t counter)
{
    return static_cast<std::uint32_t>(counter);
}

} // namespace

const Block global_block{"EBCOM global statistics", global_fields};
const Block inbound_block{"PCEP inbound statistics", inbound_fields};
const Block outbound_block{"PCEP outbound statistics", outbound_fields};

qos_queue_stats queue_statistics(const Counters &counters, const Waiting &waiting)
{
    const Tally &received = counters[Fate::received];
    const Tally &sent = counters[Fate::sent];
    const Tally &dropped = counters[Fate::dropped];
    qos_queue_stats record{};
    record.octets_tx = sent.octets;
    record.octets_rx = received.octets;
    record.octets_dropped = dropped.octets;
    record.pkts_tx = low_word(sent.frames);
    record.pkts_rx = low_word(received.frames);
    record.pkts_dropped = low_word(dropped.frames);
    record.pkts_out_standing = low_word(waiting.frames);
    record.mem_blks_in_use = low_word(waiting.blocks);
    return record;
}

ebcom_pcep_stats pcep_statistics(const Counters &counters)
{
    ebcom_pcep_stats record{};
    record.outbound.out_cnt0 = counters[Fate::sent].frames;
    record.outbound.out_cnt1 = counters[Fate::sent].octets;
    record.inbound.in_cnt0 = counters[Fate::received].frames;
    record.inbound.in_cnt1 = counters[Fate::received].octets;
    record.inbound.in_word0 = low_word(counters[Fate::dropped].frames);
    record.inbound.in_cnt2 = counters[Fate::dropped].octets;
    return record;
}

ebcom_global_stats global_statistics(const Counters &counters, const Population &population)
{
    softnode_global_statistics statistics{};
    statistics.frames_received = counters[Fate::received].frames;
    statistics.octets_received = counters[Fate::received].octets;
    statistics.frames_sent = counters[Fate::sent].frames;
    statistics.octets_sent = counters[Fate::sent].octets;
    statistics.frames_dropped = counters[Fate::dropped].frames;
    statistics.octets_dropped = counters[Fate::dropped].octets;
    statistics.paths = population.paths;
    statistics.pceps = population.pceps;
    statistics.groups = population.groups;
    return std::bit_cast<ebcom_global_stats>(statistics);
}

} // namespace softnode
