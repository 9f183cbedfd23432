// The closed functions that return a code; those without one are not wrapped, as there is nothing to note. The
// library's own thread calls some of them, too: a fault of one that both threads call is that of one thread only.
#pragma once

#include <cstddef>

#define KEL_CLOSED_FUNCTIONS(ROW)                                                                                      \
    ROW(kel_fmt_ebcom_global_stats, false)                                                                             \
    ROW(kel_fmt_ebcom_pcep_inbound_stats, false)                                                                       \
    ROW(kel_fmt_ebcom_pcep_outbound_stats, false)                                                                      \
    ROW(kel_fmt_end, false)                                                                                            \
    ROW(kel_fmt_header, false)                                                                                         \
    ROW(kel_fmt_uint32, false)                                                                                         \
    ROW(kel_init_attach, true)                                                                                         \
    ROW(kel_init_dump_ork_handles, false)                                                                              \
    ROW(kel_init_eventdev_dev_id_ebcom_get, false)                                                                     \
    ROW(kel_init_eventdev_vsi_ebcom_get, false)                                                                        \
    ROW(kel_init_qos_queue_add, false)                                                                                 \
    ROW(kel_init_qos_queue_rem, false)                                                                                 \
    ROW(kel_init_qos_queue_stats_get, false)                                                                           \
    ROW(ork_bind, false)                                                                                               \
    ROW(ork_ebcom_global_config_set, false)                                                                            \
    ROW(ork_ebcom_global_statistics_get, false)                                                                        \
    ROW(ork_ebcom_interface_create, false)                                                                             \
    ROW(ork_ebcom_interface_delete, false)                                                                             \
    ROW(ork_ebcom_multicast_group_create, false)                                                                       \
    ROW(ork_ebcom_multicast_group_delete, false)                                                                       \
    ROW(ork_ebcom_multicast_member_add, false)                                                                         \
    ROW(ork_ebcom_multicast_member_rem, false)                                                                         \
    ROW(ork_ebcom_pcep_create, false)                                                                                  \
    ROW(ork_ebcom_pcep_delete, false)                                                                                  \
    ROW(ork_ebcom_pcep_path_create, false)                                                                             \
    ROW(ork_ebcom_pcep_path_delete, false)                                                                             \
    ROW(ork_ebcom_pcep_statistics_get, false)                                                                          \
    ROW(ork_ebcom_timestamp_offset_set, false)                                                                         \
    ROW(ork_qos_queue_get, false)                                                                                      \
    ROW(ork_qos_scheduler_create, false)                                                                               \
    ROW(ork_qos_scheduler_delete, false)                                                                               \
    ROW(ork_syshandle_get, true)                                                                                       \
    ROW(ork_unbind, false)                                                                                             \
    ROW(qol_ng_restart_request_line_and_file, false)                                                                   \
    ROW(vorn_tu_free_event, false)                                                                                     \
    ROW(vorn_tu_get_nputimeoffset, false)                                                                              \
    ROW(vorn_tu_init, false)                                                                                           \
    ROW(vorn_tu_subscribe_adjnpuoffs, false)                                                                           \
    ROW(vorn_tu_wait_event, false)

namespace kel_record
{

struct closed_function {
    const char *name;
    bool called_by_both_threads;
};

#define KEL_ROW(function, both) {#function, both},
inline constexpr closed_function closed_functions[] = {KEL_CLOSED_FUNCTIONS(KEL_ROW)};
#undef KEL_ROW

// Their indexes there.
#define KEL_ROW(function, both) function,
namespace closed
{
enum index : size_t { KEL_CLOSED_FUNCTIONS(KEL_ROW) count };
}
#undef KEL_ROW

} // namespace kel_record
