// The table. Each reason is what the operation's header says, in one sentence: keep the two together. An object that is
// left without a row here makes the sweep fail.
#include "kelctl/sweep/documented_leftovers.h"

#include <algorithm>

namespace kelctl
{
namespace
{

constexpr std::string_view interface_stays =
    "kel_core_ic_ebcom_interface_create(): if only the VSI query fails, the interface stays.";
constexpr std::string_view schedulers_stay =
    "kel_core_ic_ebcom_start(), kel_ic_ebcom_init_qos(): the schedulers made before a failing step stay until a stop.";
constexpr std::string_view thread_ends =
    "kel_core_ic_ebcom_start(): the timestamp thread ends by itself at its first failure, and leaves its connection.";
constexpr std::string_view forgotten_in_stop =
    "kel_core_ic_ebcom_stop(), kel_ic_ebcom_deinit_qos(): a queue or scheduler that cannot be removed is traced and "
    "forgotten anyway.";
constexpr std::string_view path_stays =
    "kel_core_ic_ebcom_path_rem(): when the queue or the path cannot be removed, the path and its count stay though "
    "the reference on the queue is gone.";
constexpr std::string_view unbound_pcep_stays =
    "kel_core_ic_pcep_add(): when only the binding fails, the PCEP stays in the driver kit and the id stays free.";
constexpr std::string_view pcep_forgotten =
    "kel_core_ic_pcep_rem(): the id is free afterwards, whatever the result; what the driver kit refused to unbind or "
    "delete is forgotten.";
constexpr std::string_view group_forgotten =
    "kel_core_ic_pcep_mc_group_rem(): the group is forgotten, also when the driver kit refuses.";

constexpr documented_leftover leftovers[] = {
    {"kel_core_ic_ebcom_interface_create", "kel_init_eventdev_vsi_ebcom_get", "interface", interface_stays},

    {"kel_core_ic_ebcom_start", "kel_init_attach", "scheduler", schedulers_stay},
    {"kel_core_ic_ebcom_start", "ork_qos_scheduler_create", "scheduler", schedulers_stay},
    {"kel_ic_ebcom_init_qos", "kel_init_attach", "scheduler", schedulers_stay},
    {"kel_ic_ebcom_init_qos", "ork_qos_scheduler_create", "scheduler", schedulers_stay},
    {"kel_core_ic_ebcom_start", "vorn_tu_subscribe_adjnpuoffs", "timing connection", thread_ends},
    {"kel_core_ic_ebcom_start", "vorn_tu_get_nputimeoffset", "timing connection", thread_ends},
    {"kel_core_ic_ebcom_start", "vorn_tu_wait_event", "timing connection", thread_ends},
    {"kel_core_ic_ebcom_start", "vorn_tu_free_event", "timing connection", thread_ends},
    {"kel_core_ic_ebcom_start", "ork_ebcom_timestamp_offset_set", "timing connection", thread_ends},

    {"kel_core_ic_ebcom_stop", "kel_init_attach", "scheduler", forgotten_in_stop},
    {"kel_core_ic_ebcom_stop", "ork_qos_scheduler_delete", "scheduler", forgotten_in_stop},
    {"kel_core_ic_ebcom_stop", "kel_init_qos_queue_rem", "queue", forgotten_in_stop},
    {"kel_core_ic_ebcom_stop", "kel_init_qos_queue_rem", "scheduler", forgotten_in_stop},
    {"kel_ic_ebcom_deinit_qos", "kel_init_attach", "scheduler", forgotten_in_stop},
    {"kel_ic_ebcom_deinit_qos", "ork_qos_scheduler_delete", "scheduler", forgotten_in_stop},
    {"kel_ic_ebcom_deinit_qos", "kel_init_qos_queue_rem", "queue", forgotten_in_stop},
    {"kel_ic_ebcom_deinit_qos", "kel_init_qos_queue_rem", "scheduler", forgotten_in_stop},

    {"kel_core_ic_ebcom_path_rem", "kel_init_qos_queue_rem", "path", path_stays},
    {"kel_core_ic_ebcom_path_rem", "ork_ebcom_pcep_path_delete", "path", path_stays},

    {"kel_core_ic_pcep_add", "ork_bind", "pcep", unbound_pcep_stays},
    {"kel_core_ic_pcep_rem", "ork_unbind", "pcep", pcep_forgotten},
    {"kel_core_ic_pcep_rem", "ork_unbind", "binding", pcep_forgotten},
    {"kel_core_ic_pcep_rem", "ork_ebcom_pcep_delete", "pcep", pcep_forgotten},
    {"kel_core_ic_pcep_mc_group_rem", "ork_ebcom_multicast_group_delete", "group", group_forgotten},
};

} // namespace

std::span<const documented_leftover> documented_leftovers()
{
    return leftovers;
}

std::optional<std::string_view> why_left(std::span<const std::string_view> operations, std::string_view refused,
                                         std::string_view kind)
{
    for (const documented_leftover &one : leftovers)
        if (one.refused == refused && one.kind == kind &&
            std::ranges::find(operations, one.operation) != operations.end())
            return one.why;
    return std::nullopt;
}

} // namespace kelctl
