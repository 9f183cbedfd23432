// The closed libraries with nothing behind them: every function returns success at once, so that what is measured
// above them is the library's own cost. Outputs are written only where the library could not go on without them.
#include "platform/kei_util.h"
#include "platform/kel_fmt.h"
#include "platform/kel_init.h"
#include "platform/ork.h"
#include "platform/qol_ng.h"
#include "platform/vorn_tu.h"

namespace
{

int something; // what every handle points at

} // namespace

// ---- The driver kit ----

extern "C" ork_rc ork_syshandle_get(uint32_t, uint32_t, void **)
{
    return ORK_OK;
}

extern "C" const char *ork_sys_status_get(void *, ork_rc)
{
    return "";
}

extern "C" ork_rc ork_ebcom_global_config_set(void *, const ork_ebcom_global_config *)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_interface_create(void *, uint16_t)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_interface_delete(void *, uint16_t)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_timestamp_offset_set(void *, int64_t)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_pcep_path_create(void *, const ork_ebcom_pcep_path *)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_pcep_path_delete(void *, const ork_ebcom_pcep_path *)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_global_statistics_get(void *, ebcom_global_stats *)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_pcep_create(void *, const ork_ebcom_pcep_params *, uint64_t *)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_pcep_delete(void *, uint64_t)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_pcep_statistics_get(void *, uint64_t, ebcom_pcep_stats *)
{
    return ORK_OK;
}

extern "C" ork_rc ork_bind(void *, const ork_bind_params *)
{
    return ORK_OK;
}

extern "C" ork_rc ork_unbind(void *, const ork_bind_params *)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_multicast_group_create(void *, const ork_ebcom_multicast_group *, uint64_t *, uint64_t)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_multicast_group_delete(void *, uint64_t)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_multicast_member_add(void *, uint64_t, uint32_t)
{
    return ORK_OK;
}

extern "C" ork_rc ork_ebcom_multicast_member_rem(void *, uint64_t, uint32_t)
{
    return ORK_OK;
}

extern "C" ork_rc ork_qos_scheduler_create(void *, const ork_qos_scheduler_params *, uint32_t, void **scheduler)
{
    *scheduler = &something;
    return ORK_OK;
}

extern "C" ork_rc ork_qos_scheduler_delete(void *, void *)
{
    return ORK_OK;
}

// Every queue is unshaped, as the measured paths ask for it.
extern "C" ork_rc ork_qos_queue_get(void *, void *, ork_qos_queue *record)
{
    record->shapingMode = ORK_QOS_QUEUE_UNSHAPED;
    return ORK_OK;
}

// ---- The companion library ----

extern "C" uint32_t kel_init_attach(kel_attach_info *)
{
    return KEL_RC_OK;
}

extern "C" uint32_t kel_init_eventdev_dev_id_ebcom_get(uint16_t *)
{
    return KEL_RC_OK;
}

extern "C" uint32_t kel_init_eventdev_vsi_ebcom_get(kel_vsi_t *)
{
    return KEL_RC_OK;
}

extern "C" uint32_t kel_init_qos_queue_add(const kel_init_qos_queue_params *, uint32_t, void *, uint16_t, void **queue)
{
    *queue = &something;
    return KEL_RC_OK;
}

extern "C" uint32_t kel_init_qos_queue_rem(void *)
{
    return KEL_RC_OK;
}

extern "C" uint32_t kel_init_qos_queue_stats_get(void *, qos_queue_stats *)
{
    return KEL_RC_OK;
}

extern "C" uint32_t kel_init_dump_ork_handles(void *, const char *, uint32_t, uint32_t (*)(uint32_t),
                                              uint64_t (*)(uint32_t))
{
    return KEL_RC_OK;
}

// ---- The formatting library ----

extern "C" uint32_t kel_fmt_header(char *, uint32_t, uint8_t, const char *)
{
    return KEL_RC_OK;
}

extern "C" uint32_t kel_fmt_uint32(char *, uint32_t, uint8_t, const char *, uint32_t)
{
    return KEL_RC_OK;
}

extern "C" uint32_t kel_fmt_ebcom_global_stats(char *, uint32_t, uint8_t, const ebcom_global_stats *)
{
    return KEL_RC_OK;
}

extern "C" uint32_t kel_fmt_ebcom_pcep_inbound_stats(char *, uint32_t, uint8_t, const void *)
{
    return KEL_RC_OK;
}

extern "C" uint32_t kel_fmt_ebcom_pcep_outbound_stats(char *, uint32_t, uint8_t, const void *)
{
    return KEL_RC_OK;
}

extern "C" uint32_t kel_fmt_end(char *, uint32_t)
{
    return KEL_RC_OK;
}

// ---- The utility library ----

extern "C" const char *kei_util_init_rc_str_get(uint32_t)
{
    return "";
}

// The text is the key of the library's count table: it has to differ from address to address.
extern "C" char *macAddr2str(char *text, const uint8_t *mac)
{
    constexpr char digits[] = "0123456789abcdef";
    for (int i = 0; i < 6; ++i) {
        text[3 * i] = digits[mac[i] >> 4];
        text[3 * i + 1] = digits[mac[i] & 0xF];
        text[3 * i + 2] = i < 5 ? ':' : '\0';
    }
    return text;
}

// ---- The timing unit ----

// Not there: a timestamp thread ends as soon as it has started. It would wait for events otherwise, and every
// measured start would leave one more of them behind.
extern "C" int32_t vorn_tu_init(void **)
{
    return -1;
}

extern "C" int32_t vorn_tu_subscribe_adjnpuoffs(void *, int32_t)
{
    return 0;
}

extern "C" int32_t vorn_tu_wait_event(void *, vorn_tu_event **)
{
    return -1;
}

extern "C" int32_t vorn_tu_free_event(void *, vorn_tu_event **)
{
    return 0;
}

extern "C" int32_t vorn_tu_get_nputimeoffset(void *, uint32_t, vorn_tu_nputimeoffset *)
{
    return 0;
}

// ---- The node-restart service ----

extern "C" int32_t qol_ng_restart_request_line_and_file(uint32_t, const char *, uint32_t, const char *, uint32_t,
                                                        void *)
{
    return 0;
}
