/*
 * closed_functions.h - the closed functions that return a code: those that are counted and can be made to fail.
 */
#ifndef SOFTNODE_CLOSED_FUNCTIONS_H
#define SOFTNODE_CLOSED_FUNCTIONS_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace softnode
{

/* Sorted, for the look-up below. */
constexpr std::array<std::string_view, 39> closed_functions{
    "kel_fmt_ebcom_global_stats",
    "kel_fmt_ebcom_pcep_inbound_stats",
    "kel_fmt_ebcom_pcep_outbound_stats",
    "kel_fmt_end",
    "kel_fmt_header",
    "kel_fmt_uint32",
    "kel_init_attach",
    "kel_init_dump_ork_handles",
    "kel_init_eventdev_dev_id_ebcom_get",
    "kel_init_eventdev_vsi_ebcom_get",
    "kel_init_qos_queue_add",
    "kel_init_qos_queue_rem",
    "kel_init_qos_queue_stats_get",
    "ork_bind",
    "ork_ebcom_global_config_set",
    "ork_ebcom_global_statistics_get",
    "ork_ebcom_interface_create",
    "ork_ebcom_interface_delete",
    "ork_ebcom_multicast_group_create",
    "ork_ebcom_multicast_group_delete",
    "ork_ebcom_multicast_member_add",
    "ork_ebcom_multicast_member_rem",
    "ork_ebcom_pcep_create",
    "ork_ebcom_pcep_delete",
    "ork_ebcom_pcep_path_create",
    "ork_ebcom_pcep_path_delete",
    "ork_ebcom_pcep_statistics_get",
    "ork_ebcom_timestamp_offset_set",
    "ork_qos_queue_get",
    "ork_qos_scheduler_create",
    "ork_qos_scheduler_delete",
    "ork_syshandle_get",
    "ork_unbind",
    "qol_ng_restart_request_line_and_file",
    "vorn_tu_free_event",
    "vorn_tu_get_nputimeoffset",
    "vorn_tu_init",
    "vorn_tu_subscribe_adjnpuoffs",
    "vorn_tu_wait_event",
};
static_assert(std::is_sorted(closed_functions.begin(), closed_functions.end()));

/** A function's index in closed_functions; none for any other name. */
constexpr std::optional<std::size_t> closed_function(std::string_view name)
{
    const auto place = std::lower_bound(closed_functions.begin(), closed_functions.end(), name);
    if (place == closed_functions.end() || *place != name)
        return std::nullopt;
    return static_cast<std::size_t>(place - closed_functions.begin());
}

} // namespace softnode

#endif
