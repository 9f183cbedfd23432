#include "bare.h"

#include "platform/kel_fmt.h"
#include "platform/kel_init.h"

#include <cstring>

namespace bare
{
namespace
{

constexpr uint32_t highest_pcep_id = 511;

// What has to be kept of a PCEP.
struct pcep_entry {
    uint32_t pcep_id;
    uint64_t handle;
    uint32_t location;
    uint32_t member_count;
    kel_pcep_config config;
};

kel_attach_info attachment;
pcep_entry pceps[highest_pcep_id + 1];

uint32_t table_id(uint32_t index)
{
    return pceps[index].pcep_id;
}

uint64_t table_handle(uint32_t index)
{
    return pceps[index].handle;
}

ork_bind_params bind_params(uint32_t pcep_id)
{
    ork_bind_params params{};
    params.word0 = 4;
    params.word4 = 1;
    params.word8 = 1;
    params.ork_handle = attachment.ork_handle;
    params.pcep_id = pcep_id;
    params.word36 = 2;
    params.target = attachment.ehsfp_target;
    params.word60 = 2;
    params.byte84 = 1;
    return params;
}

} // namespace

void pcep_start()
{
    memset(pceps, 0, sizeof pceps);
    kel_init_attach(&attachment);
    kel_core_ic_pcep_create_queue_and_scheduler_for_multicast(&attachment, nullptr, nullptr);
}

void pcep_stop()
{
    attachment = {};
    memset(pceps, 0, sizeof pceps);
}

void dump_pcep_handles(void *destination)
{
    kel_init_dump_ork_handles(destination, "PCEP Handles", highest_pcep_id, table_id, table_handle);
}

void pcep_add(uint32_t pcep_id, const kel_pcep_config &config, bool bound)
{
    pcep_entry &entry = pceps[pcep_id];
    uint32_t local = 0;
    uint32_t remote = 0;
    uint32_t type = 0;
    kel_ic_pcep_get_location_and_type_from_branch(config.local_mac, &local, &type);
    kel_ic_pcep_get_location_and_type_from_branch(config.remote_mac, &remote, &type);
    ork_ebcom_pcep_params params{};
    memcpy(params.sMac, config.local_mac, sizeof params.sMac);
    memcpy(params.dMac, config.remote_mac, sizeof params.dMac);
    params.vlan = static_cast<uint16_t>((config.vlan_id & 0xFFF) | (config.priority & 7) << 12);
    params.localPcepId = pcep_id & 0xFFFFFF;
    params.remotePcepId = static_cast<uint32_t>(config.byte19 | config.remote_pcep_id[0] << 8 |
                                                config.remote_pcep_id[1] << 16 | config.remote_pcep_id[2] << 24);
    params.word24 = config.word20;
    params.byte28 = 1;
    ork_ebcom_pcep_create(attachment.ork_handle, &params, &entry.handle);
    if (bound) {
        const ork_bind_params binding = bind_params(pcep_id);
        ork_bind(attachment.sys_handle, &binding);
    }
    entry.location = local;
    entry.config = config;
    entry.pcep_id = pcep_id;
}

void pcep_rem(uint32_t pcep_id, bool bound)
{
    pcep_entry &entry = pceps[pcep_id];
    if (bound) {
        const ork_bind_params binding = bind_params(pcep_id);
        ork_unbind(attachment.sys_handle, &binding);
    }
    ork_ebcom_pcep_delete(attachment.ork_handle, entry.handle);
    entry = {};
}

void group_add(uint32_t pcep_id)
{
    pcep_entry &entry = pceps[pcep_id];
    ork_ebcom_multicast_group group{};
    group.pcep_id = pcep_id & 0xFFF;
    ork_ebcom_multicast_group_create(attachment.ork_handle, &group, &entry.handle, 0);
    entry.location = 5;
    entry.pcep_id = pcep_id;
}

void group_rem(uint32_t pcep_id)
{
    ork_ebcom_multicast_group_delete(attachment.ork_handle, pceps[pcep_id].handle);
    pceps[pcep_id] = {};
}

void member_add(uint32_t group_id, uint32_t pcep_id)
{
    ork_ebcom_multicast_member_add(attachment.ork_handle, pceps[group_id].handle, pcep_id);
    ++pceps[group_id].member_count;
}

void member_rem(uint32_t group_id, uint32_t pcep_id)
{
    ork_ebcom_multicast_member_rem(attachment.ork_handle, pceps[group_id].handle, pcep_id);
    --pceps[group_id].member_count;
}

void get_pcep_stats(uint32_t pcep_id, ebcom_pcep_stats &stats)
{
    memset(&stats, 0, sizeof stats);
    ebcom_pcep_stats counters;
    ork_ebcom_pcep_statistics_get(attachment.ork_handle, pceps[pcep_id].handle, &counters);
    stats.outbound.out_cnt0 = counters.outbound.out_cnt0;
    stats.outbound.out_cnt1 = counters.outbound.out_cnt1;
    stats.inbound = counters.inbound;
}

void get_compact_pcep_stats(uint32_t pcep_id, pcep_stats &stats)
{
    ebcom_pcep_stats counters;
    get_pcep_stats(pcep_id, counters);
    const ebcom_pcep_inbound_stats &in = counters.inbound;
    stats = {in.in_cnt0,
             in.in_word4,
             in.in_word0,
             in.in_word5,
             in.in_word1,
             in.in_word2,
             in.in_cnt1,
             in.in_word3,
             in.in_word6,
             in.in_cnt2,
             in.in_cnt3,
             counters.outbound.out_cnt0,
             counters.outbound.out_cnt1};
}

void format_pcep_stats(uint32_t pcep_id, char *buf, uint32_t len, uint8_t format)
{
    *buf = '\0';
    ebcom_pcep_stats stats;
    get_pcep_stats(pcep_id, stats);
    kel_fmt_ebcom_pcep_inbound_stats(buf, len, format, &stats.inbound);
    kel_fmt_ebcom_pcep_outbound_stats(buf, len, format, &stats.outbound);
    kel_fmt_end(buf, len);
}

} // namespace bare
