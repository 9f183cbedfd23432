// PCEPs, packet communication end points: locations, unicast PCEPs, multicast groups, and statistics.
#include "call_frame.h"
#include "kel/kel_core_ic_pcep.h"
#include "kel/kel_node_names.h"
#include "pcep_table.h"
#include "platform/kel_fmt.h"

#include <cstdlib>
#include <initializer_list>

using namespace kel;

namespace
{

constexpr char trace_domain[] = "PCEP";

// ---- Locations ----

// 0 until it is read from the environment; then kept for the life of the process, across every start and stop.
uint8_t own_mp_id;

uint8_t own_mp_id_get()
{
    if (own_mp_id)
        return own_mp_id;
    const char *text = getenv("MPID");
    if (!text) {
        TRACE(ERROR, "Failed to get environment variable MPID");
        return own_mp_id;
    }
    own_mp_id = static_cast<uint8_t>(strtol(text, nullptr, 10));
    TRACE(INFO, "MPID = %s (%d)", text, own_mp_id);
    return own_mp_id;
}

// Bit 7 of byte 2 marks a CPU address of any MP; only without it the own MP id has to be known.
bool is_cpu(const uint8_t *mac)
{
    return mac[3] == 0 && ((mac[2] & 0x80) != 0 || mac[2] == own_mp_id_get());
}

// ---- State ----

// Filled by the start, for every call until the stop.
kel_attach_info pcep_attach;

// Outputs of the multicast hook, which writes neither.
uint64_t mc_queue_handle;
uint64_t mc_scheduler_handle;

// ---- Unicast PCEPs ----

uint32_t remote_pcep_id(const kel_pcep_config &config)
{
    const uint8_t *octets = config.remote_pcep_id;
    return static_cast<uint32_t>(octets[0] | octets[1] << 8 | octets[2] << 16);
}

ork_ebcom_pcep_params create_params(uint32_t pcep_id, const kel_pcep_config &config)
{
    ork_ebcom_pcep_params params{};
    memcpy(params.sMac, config.local_mac, sizeof params.sMac);
    memcpy(params.dMac, config.remote_mac, sizeof params.dMac);
    params.vlan = static_cast<uint16_t>((config.vlan_id & 0xFFF) | (config.priority & 7) << 12);
    params.localPcepId = pcep_id & 0xFFFFFF;
    params.remotePcepId = config.byte19 | remote_pcep_id(config) << 8;
    params.word24 = config.word20;
    params.byte28 = 1;
    return params;
}

// The same for binding and unbinding. The constants are the driver kit's.
ork_bind_params bind_params(uint32_t pcep_id)
{
    ork_bind_params params{};
    params.word0 = 4;
    params.word4 = 1;
    params.word8 = 1;
    params.ork_handle = pcep_attach.ork_handle;
    params.pcep_id = pcep_id;
    params.word36 = 2;
    params.target = pcep_attach.ehsfp_target;
    params.word60 = 2;
    params.byte84 = 1;
    return params;
}

uint32_t bind_pcep(call_site site, uint32_t pcep_id)
{
    const ork_bind_params params = bind_params(pcep_id);
    TRACE_AT(site, API_CALL, "ork_bind(ID2M): PCEP_ID=%d -> EHSFP", pcep_id);
    if (const ork_rc rc = ork_bind(pcep_attach.sys_handle, &params))
        return report_ork(site, rc, "ork_bind");
    return KEL_RC_OK;
}

uint32_t unbind_pcep(call_site site, uint32_t pcep_id)
{
    const ork_bind_params params = bind_params(pcep_id);
    TRACE_AT(site, API_CALL, "ork_unbind(ID2M): PCEP_ID=%d -> EHSFP", pcep_id);
    if (const ork_rc rc = ork_unbind(pcep_attach.sys_handle, &params))
        return report_ork(site, rc, "ork_unbind");
    return KEL_RC_OK;
}

// Takes a PCEP out of the driver kit; the table stays as it is.
uint32_t delete_pcep(call_site site, uint32_t pcep_id, const pcep_entry &entry)
{
    if (!entry.pcep_id)
        return report(site, KEL_RC_NOT_FOUND, "(pcep_id)");
    if (entry.location == KEL_LOCATION_MULTICAST)
        return report(site, KEL_RC_MISMATCH, "pcep_id is a Multicast PCEP");
    if (entry.location == KEL_LOCATION_HSFP) {
        if (const uint32_t rc = unbind_pcep(site, pcep_id))
            return rc;
    }
    TRACE_AT(site, API_CALL, "ork_ebcom_pcep_delete(pcep_id=%d)", pcep_id);
    if (const ork_rc rc = ork_ebcom_pcep_delete(pcep_attach.ork_handle, entry.handle))
        return report_ork(site, rc, "ork_ebcom_pcep_delete");
    return KEL_RC_OK;
}

// ---- Multicast ----

// Takes a group out of the driver kit; the table stays as it is.
uint32_t delete_group(call_site site, uint32_t mc_pcep_id, const pcep_entry &group)
{
    TRACE_AT(site, API_CALL, "ork_ebcom_multicast_group_delete(mc_pcep_id=%d)", mc_pcep_id);
    if (const ork_rc rc = ork_ebcom_multicast_group_delete(pcep_attach.ork_handle, group.handle))
        return report_ork(site, rc, "ork_ebcom_multicast_group_delete");
    return KEL_RC_OK;
}

// What adding and removing a member ask first. The order of the questions is relied upon.
uint32_t check_membership(call_site site, uint32_t mc_pcep_id, uint32_t uc_pcep_id)
{
    for (const uint32_t pcep_id : {mc_pcep_id, uc_pcep_id}) {
        if (!is_valid_id(pcep_id))
            return report(site, KEL_RC_OUT_OF_RANGE, "(pcep_id)");
        if (!pcep_table[pcep_id].pcep_id)
            return report(site, KEL_RC_NOT_FOUND, "(pcep_id)");
    }
    if (pcep_table[mc_pcep_id].location != KEL_LOCATION_MULTICAST)
        return report(site, KEL_RC_MISMATCH, "mc_pcep_id is not a Multicast PCEP");
    return KEL_RC_OK;
}

// ---- Statistics ----

pcep_stats compact(const ebcom_pcep_stats &stats)
{
    const ebcom_pcep_inbound_stats &in = stats.inbound;
    const ebcom_pcep_outbound_stats &out = stats.outbound;
    return {
        .in_cnt0 = in.in_cnt0,
        .in_word4 = in.in_word4,
        .in_word0 = in.in_word0,
        .in_word5 = in.in_word5,
        .in_word1 = in.in_word1,
        .in_word2 = in.in_word2,
        .in_cnt1 = in.in_cnt1,
        .in_word3 = in.in_word3,
        .in_word6 = in.in_word6,
        .in_cnt2 = in.in_cnt2,
        .in_cnt3 = in.in_cnt3,
        .out_cnt0 = out.out_cnt0,
        .out_cnt1 = out.out_cnt1,
    };
}

} // namespace

// ---- Exported: locations ----

extern "C" uint32_t kel_ic_pcep_get_location_and_type_from_branch(const uint8_t *mac, uint32_t *location,
                                                                  uint32_t *type)
{
    struct branch {
        uint32_t location;
        uint32_t type;
    } branch{KEL_LOCATION_EIOA, 0};

    if (mac[3] == 2)
        branch = {KEL_LOCATION_OB, 2};
    else if (mac[3] == 3)
        branch = {KEL_LOCATION_HSFP, 2};
    else if (is_cpu(mac))
        branch = {KEL_LOCATION_CPU, 1};

    *location = branch.location;
    *type = branch.type;
    return KEL_RC_OK;
}

// ---- Exported: start, stop, dump ----

extern "C" uint32_t kel_core_ic_pcep_start()
{
    clear_pcep_table();
    TRACE_FUNCTION();

    if (const uint32_t rc = kel_init_attach(&pcep_attach)) // not announced, unlike elsewhere
        return report(HERE, rc, "kel_init_attach");
    if (const uint32_t rc = kel_core_ic_pcep_create_queue_and_scheduler_for_multicast(&pcep_attach, &mc_queue_handle,
                                                                                      &mc_scheduler_handle))
        return report(HERE, rc, "kel_core_ic_pcep_create_queue_and_scheduler_for_multicast");
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_pcep_stop()
{
    TRACE_FUNCTION();

    // The driver kit keeps its PCEPs, bindings and groups, and the groups stay counted.
    pcep_attach = {};
    clear_pcep_table();
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_pcep_handle_dump(void *destination)
{
    kel_init_dump_ork_handles(destination, "PCEP Handles", highest_pcep_id, pcep_table_id, pcep_table_handle);
    return KEL_RC_OK;
}

// Makes nothing: groups are created with a scheduler handle of 0.
extern "C" uint32_t kel_core_ic_pcep_create_queue_and_scheduler_for_multicast(kel_attach_info *, uint64_t *, uint64_t *)
{
    return KEL_RC_OK;
}

// ---- Exported: unicast PCEPs ----

extern "C" uint32_t kel_core_ic_pcep_add(uint32_t pcep_id, const kel_pcep_config *config)
{
    TRACE_FUNCTION();

    if (!is_valid_id(pcep_id))
        return report(HERE, KEL_RC_OUT_OF_RANGE, "(pcep_id)");
    pcep_entry &entry = pcep_table[pcep_id];
    if (entry.pcep_id)
        return report(HERE, KEL_RC_IN_USE, "(pcep_id)");

    uint32_t local = KEL_LOCATION_NONE;
    uint32_t remote = KEL_LOCATION_NONE;
    uint32_t type = 0; // not used for either side
    if (const uint32_t rc = kel_ic_pcep_get_location_and_type_from_branch(config->local_mac, &local, &type))
        return report(HERE, rc, "get_pcep_location_and_type_from_branch(local)");
    if (const uint32_t rc = kel_ic_pcep_get_location_and_type_from_branch(config->remote_mac, &remote, &type))
        return report(HERE, rc, "get_pcep_location_and_type_from_branch(remote)");

    const ork_ebcom_pcep_params params = create_params(pcep_id, *config);
    TRACE(API_CALL, "ork_ebcom_pcep_create(localPcepId=%d, remotePcepId=%d, vlanId=%d, sMac=%s(%s), dMac=%s(%s))",
          params.localPcepId, params.remotePcepId >> 8, params.vlan & 0xFFF, mac_text(params.sMac).text,
          kel_location_name(local), mac_text(params.dMac).text, kel_location_name(remote));
    if (const ork_rc rc = ork_ebcom_pcep_create(pcep_attach.ork_handle, &params, &entry.handle))
        return report_ork(HERE, rc, "ork_ebcom_pcep_create");
    if (local == KEL_LOCATION_HSFP) {
        if (const uint32_t rc = bind_pcep(HERE, pcep_id)) // the PCEP stays in the driver kit
            return rc;
    }

    entry.location = local;
    entry.config = *config;
    entry.pcep_id = pcep_id;
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_pcep_rem(uint32_t pcep_id)
{
    TRACE_FUNCTION();

    if (!is_valid_id(pcep_id))
        return report(HERE, KEL_RC_OUT_OF_RANGE, "(pcep_id)");
    pcep_entry &entry = pcep_table[pcep_id];
    const uint32_t rc = delete_pcep(HERE, pcep_id, entry);
    entry = {}; // whatever the result: a group, or what the driver kit kept, is forgotten, as callers rely on
    return rc;
}

// ---- Exported: multicast ----

extern "C" uint32_t kel_core_ic_pcep_mc_group_add(uint32_t mc_pcep_id)
{
    TRACE_FUNCTION();

    if (!is_valid_id(mc_pcep_id))
        return report(HERE, KEL_RC_OUT_OF_RANGE, "(pcep_id)");
    pcep_entry &entry = pcep_table[mc_pcep_id];
    if (entry.pcep_id)
        return report(HERE, KEL_RC_IN_USE, "(pcep_id)");
    if (multicast_groups >= max_multicast_groups)
        return report(HERE, KEL_RC_LIMIT, "");

    ork_ebcom_multicast_group group{};
    group.pcep_id = mc_pcep_id & 0xFFF;
    const ork_rc rc =
        ork_ebcom_multicast_group_create(pcep_attach.ork_handle, &group, &entry.handle, mc_scheduler_handle);
    if (rc)
        return report_ork(HERE, rc, "ork_ebcom_multicast_group_create");

    ++multicast_groups;
    entry.location = KEL_LOCATION_MULTICAST;
    entry.pcep_id = mc_pcep_id;
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_pcep_mc_group_rem(uint32_t mc_pcep_id)
{
    TRACE_FUNCTION();

    if (!is_valid_id(mc_pcep_id))
        return report(HERE, KEL_RC_OUT_OF_RANGE, "(pcep_id)");
    pcep_entry &entry = pcep_table[mc_pcep_id];
    if (!entry.pcep_id) {
        const uint32_t rc = report(HERE, KEL_RC_NOT_FOUND, "(pcep_id)");
        forget_group(entry); // lowers the count though there was no group, as callers rely on
        return rc;
    }
    if (entry.location != KEL_LOCATION_MULTICAST)
        return report(HERE, KEL_RC_MISMATCH, "mc_pcep_id is not a Multicast PCEP");
    if (entry.member_count)
        return report(HERE, KEL_RC_NOT_EMPTY, "");

    const uint32_t rc = delete_group(HERE, mc_pcep_id, entry);
    forget_group(entry); // whatever the result
    return rc;
}

extern "C" uint32_t kel_core_ic_pcep_mc_member_add(uint32_t mc_pcep_id, uint32_t uc_pcep_id)
{
    TRACE_FUNCTION();

    if (const uint32_t rc = check_membership(HERE, mc_pcep_id, uc_pcep_id))
        return rc;
    pcep_entry &group = pcep_table[mc_pcep_id];
    if (group.member_count >= max_group_members)
        return report(HERE, KEL_RC_LIMIT, "");

    TRACE(API_CALL, "ork_ebcom_multicast_member_add(mc_pcep_id=%d, uc_pcep_id=%d)", mc_pcep_id, uc_pcep_id);
    if (const ork_rc rc = ork_ebcom_multicast_member_add(pcep_attach.ork_handle, group.handle, uc_pcep_id))
        return report_ork(HERE, rc, "ork_ebcom_multicast_member_add");
    ++group.member_count;
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_pcep_mc_member_rem(uint32_t mc_pcep_id, uint32_t uc_pcep_id)
{
    TRACE_FUNCTION();

    if (const uint32_t rc = check_membership(HERE, mc_pcep_id, uc_pcep_id))
        return rc;
    pcep_entry &group = pcep_table[mc_pcep_id];

    TRACE(API_CALL, "ork_ebcom_multicast_member_rem(mc_pcep_id=%d, uc_pcep_id=%d)", mc_pcep_id, uc_pcep_id);
    if (const ork_rc rc = ork_ebcom_multicast_member_rem(pcep_attach.ork_handle, group.handle, uc_pcep_id))
        return report_ork(HERE, rc, "ork_ebcom_multicast_member_rem");
    --group.member_count; // unguarded: the driver kit knew the member
    return KEL_RC_OK;
}

// ---- Exported: statistics ----

extern "C" uint32_t kel_ic_pcep_get_stats(uint32_t pcep_id, ebcom_pcep_stats *stats)
{
    *stats = {};
    if (!is_valid_id(pcep_id))
        return report(HERE, KEL_RC_OUT_OF_RANGE, "(pcep_id)");
    const pcep_entry &entry = pcep_table[pcep_id];
    if (!entry.pcep_id)
        return report(HERE, KEL_RC_NOT_FOUND, "(pcep_id)");
    if (entry.location == KEL_LOCATION_MULTICAST)
        return report(HERE, KEL_RC_UNSUPPORTED, "Statistics not supported for Multicast PCEPs");

    ebcom_pcep_stats counters;
    if (const ork_rc rc = ork_ebcom_pcep_statistics_get(pcep_attach.ork_handle, entry.handle, &counters))
        return report_ork(HERE, rc, "ork_ebcom_pcep_statistics_get");
    // The rest of the outbound block stays 0, whatever the driver kit wrote there.
    stats->outbound.out_cnt0 = counters.outbound.out_cnt0;
    stats->outbound.out_cnt1 = counters.outbound.out_cnt1;
    stats->inbound = counters.inbound;
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_pcep_stats_get(uint32_t pcep_id, pcep_stats *stats)
{
    *stats = {};
    ebcom_pcep_stats counters;
    if (const uint32_t rc = kel_ic_pcep_get_stats(pcep_id, &counters))
        return report(HERE, rc, "kel_ic_pcep_get_stats");
    *stats = compact(counters);
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_pcep_get_stats(uint32_t pcep_id, pcep_stats *stats)
{
    return kel_core_ic_pcep_stats_get(pcep_id, stats);
}

extern "C" uint32_t kel_core_ic_pcep_fmt_stats_get(uint32_t pcep_id, char *buf, uint32_t len, uint8_t format)
{
    *buf = '\0';
    ebcom_pcep_stats stats;
    if (const uint32_t rc = kel_ic_pcep_get_stats(pcep_id, &stats))
        return report(HERE, rc, "kel_ic_pcep_get_stats");
    kel_fmt_ebcom_pcep_inbound_stats(buf, len, format, &stats.inbound);
    kel_fmt_ebcom_pcep_outbound_stats(buf, len, format, &stats.outbound);
    if (const uint32_t rc = kel_fmt_end(buf, len))
        return report(HERE, rc, "kel_fmt_end");
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_pcep_fmt_stats(uint32_t pcep_id, char *buf, uint32_t len, uint32_t format)
{
    return kel_core_ic_pcep_fmt_stats_get(pcep_id, buf, len, static_cast<uint8_t>(format));
}
