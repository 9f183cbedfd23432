/*
 * ork.cpp - the driver kit, over the process-wide node.
 */
#include "softnode/closed/codes.h"
#include "softnode/closed/statistics.h"
#include "softnode/instance/closed_call.h"
#include "softnode/platform.h"

#include <array>

using namespace softnode;

namespace
{

/* A driver-kit call: its first argument is the handle that kel_init_attach() hands out. */
template <class Work> ork_rc driver_kit_call(const char *function, void *ork, Work work)
{
    return closed_call<ork_rc>(function, [&](Node &node) {
        if (const Refusal refusal = node.attachment.check_driver_kit(handle_of(ork)))
            return driver_kit_code(refusal);
        return driver_kit_code(work(node));
    });
}

/* A binding: its first argument is the system handle, the driver-kit handle is in the record. */
template <class Work> ork_rc binding_call(const char *function, void *sys_handle, Work work)
{
    return closed_call<ork_rc>(function, [&](Node &node) {
        if (const Refusal refusal = node.attachment.check_system(handle_of(sys_handle)))
            return driver_kit_code(refusal);
        return driver_kit_code(work(node));
    });
}

/* PCEP and group handles are passed as numbers. */
Handle numbered(uint64_t handle)
{
    return static_cast<Handle>(handle);
}

struct StatusText {
    ork_rc rc;
    const char *text;
};

constexpr std::array<StatusText, 10> status_texts{{
    {ORK_OK, "success"},
    {ORK_INVAL, "invalid argument or handle"},
    {ORK_UNSUPP, "not supported"},
    {ORK_NOPORT, "no such port or Ethernet device"},
    {ORK_AGAIN, "still in use, try again"},
    {ORK_SHUTDOWN, "shut down"},
    {ORK_NODOMAIN, "no such domain"},
    {ORK_INTERNAL, "internal error"},
    {ORK_NOTAVAIL, "object not available"},
    {ORK_OUTOFRANGE, "out of range, table full"},
}};

} // namespace

ork_rc ork_syshandle_get(uint32_t a, uint32_t b, void **sys_handle)
{
    return closed_call<ork_rc>(__func__, [&](Node &node) {
        if (a != 0 || b != 1 || !sys_handle)
            return driver_kit_code(Refusal::invalid);
        *sys_handle = pointer_of(node.attachment.system());
        return driver_kit_code(Refusal::granted);
    });
}

const char *ork_sys_status_get(void *sys_handle, ork_rc rc)
{
    const Handle system = with_node([](Node &node) { return node.attachment.system(); });
    if (handle_of(sys_handle) != system)
        return "no status without the system handle";

    for (const StatusText &status : status_texts)
        if (status.rc == rc)
            return status.text;
    return "unknown status";
}

ork_rc ork_ebcom_global_config_set(void *ork, const ork_ebcom_global_config *config)
{
    return driver_kit_call(__func__, ork,
                           [&](Node &node) { return config ? node.ebcom.set_globals(*config) : Refusal::invalid; });
}

ork_rc ork_ebcom_interface_create(void *ork, uint16_t eth_dev_id)
{
    return driver_kit_call(__func__, ork, [&](Node &node) { return node.ebcom.create_interface(eth_dev_id); });
}

ork_rc ork_ebcom_interface_delete(void *ork, uint16_t eth_dev_id)
{
    return driver_kit_call(__func__, ork, [&](Node &node) { return node.ebcom.delete_interface(eth_dev_id); });
}

ork_rc ork_ebcom_timestamp_offset_set(void *ork, int64_t offset)
{
    return driver_kit_call(__func__, ork, [&](Node &node) {
        node.ebcom.set_timestamp_offset(offset);
        return Refusal::granted;
    });
}

ork_rc ork_ebcom_pcep_path_create(void *ork, const ork_ebcom_pcep_path *path)
{
    return driver_kit_call(__func__, ork,
                           [&](Node &node) { return path ? node.create_path(*path) : Refusal::invalid; });
}

/* The path is found by its address alone; the rest of the record is not read. */
ork_rc ork_ebcom_pcep_path_delete(void *ork, const ork_ebcom_pcep_path *path)
{
    return driver_kit_call(__func__, ork, [&](Node &node) {
        return path ? node.ebcom.delete_path(mac_at(path->macAddr)) : Refusal::invalid;
    });
}

ork_rc ork_ebcom_global_statistics_get(void *ork, ebcom_global_stats *stats)
{
    return driver_kit_call(__func__, ork, [&](Node &node) {
        if (!stats)
            return Refusal::invalid;
        *stats = global_statistics(node.ebcom.counters(),
                                   {node.ebcom.paths().size(), node.pceps.pceps().size(), node.pceps.groups().size()});
        return Refusal::granted;
    });
}

ork_rc ork_ebcom_pcep_create(void *ork, const ork_ebcom_pcep_params *params, uint64_t *handle)
{
    return driver_kit_call(__func__, ork, [&](Node &node) {
        if (!params || !handle)
            return Refusal::invalid;
        Handle created = Handle::null;
        if (const Refusal refusal = node.pceps.create_pcep(*params, created))
            return refusal;
        *handle = static_cast<uint64_t>(created);
        return Refusal::granted;
    });
}

ork_rc ork_ebcom_pcep_delete(void *ork, uint64_t handle)
{
    return driver_kit_call(__func__, ork, [&](Node &node) { return node.pceps.delete_pcep(numbered(handle)); });
}

ork_rc ork_ebcom_pcep_statistics_get(void *ork, uint64_t handle, ebcom_pcep_stats *stats)
{
    return driver_kit_call(__func__, ork, [&](Node &node) {
        if (!stats)
            return Refusal::invalid;
        if (const Refusal refusal = node.pceps.pceps().check(numbered(handle)))
            return refusal;
        *stats = pcep_statistics(node.pceps.pceps().at(numbered(handle)).counters);
        return Refusal::granted;
    });
}

ork_rc ork_bind(void *sys_handle, const ork_bind_params *params)
{
    return binding_call(__func__, sys_handle,
                        [&](Node &node) { return params ? node.bind(*params) : Refusal::invalid; });
}

ork_rc ork_unbind(void *sys_handle, const ork_bind_params *params)
{
    return binding_call(__func__, sys_handle,
                        [&](Node &node) { return params ? node.unbind(*params) : Refusal::invalid; });
}

ork_rc ork_ebcom_multicast_group_create(void *ork, const ork_ebcom_multicast_group *group, uint64_t *handle,
                                        uint64_t scheduler)
{
    return driver_kit_call(__func__, ork, [&](Node &node) {
        if (!group || !handle)
            return Refusal::invalid;
        Handle created = Handle::null;
        if (const Refusal refusal = node.create_group(*group, numbered(scheduler), created))
            return refusal;
        *handle = static_cast<uint64_t>(created);
        return Refusal::granted;
    });
}

ork_rc ork_ebcom_multicast_group_delete(void *ork, uint64_t handle)
{
    return driver_kit_call(__func__, ork, [&](Node &node) { return node.pceps.delete_group(numbered(handle)); });
}

ork_rc ork_ebcom_multicast_member_add(void *ork, uint64_t group_handle, uint32_t pcep_id)
{
    return driver_kit_call(__func__, ork,
                           [&](Node &node) { return node.pceps.add_member(numbered(group_handle), pcep_id); });
}

ork_rc ork_ebcom_multicast_member_rem(void *ork, uint64_t group_handle, uint32_t pcep_id)
{
    return driver_kit_call(__func__, ork,
                           [&](Node &node) { return node.pceps.remove_member(numbered(group_handle), pcep_id); });
}

ork_rc ork_qos_scheduler_create(void *ork, const ork_qos_scheduler_params *params, uint32_t zero, void **scheduler)
{
    return driver_kit_call(__func__, ork, [&](Node &node) {
        if (!params || zero != 0 || !scheduler)
            return Refusal::invalid;
        Handle created = Handle::null;
        if (const Refusal refusal = node.qos.create_scheduler(*params, created))
            return refusal;
        *scheduler = pointer_of(created);
        return Refusal::granted;
    });
}

ork_rc ork_qos_scheduler_delete(void *ork, void *scheduler)
{
    return driver_kit_call(__func__, ork, [&](Node &node) { return node.delete_scheduler(handle_of(scheduler)); });
}

ork_rc ork_qos_queue_get(void *ork, void *queue, ork_qos_queue *record)
{
    return driver_kit_call(__func__, ork, [&](Node &node) {
        return record ? node.qos.read_queue(handle_of(queue), *record) : Refusal::invalid;
    });
}
