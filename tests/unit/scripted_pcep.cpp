// The closed functions that PCEPs and multicast groups are made with.
#include "scripted_pcep.h"

#include "platform/ork.h"
#include "script.h"
#include "scripted_platform.h"
#include "transcript.h"

using scripted::handle_text;
using scripted::keep_record;
using scripted::logged_result;
using scripted::ork_text;
using scripted::text;

namespace
{

constexpr uint64_t first_pcep = 0x8CE9'0000'0000'0000;
constexpr uint64_t first_group = 0x96A9'0000'0000'0000;
constexpr uint64_t refused = 0xDEAD'0000'0000'BEEF;
constexpr uint32_t most_handles = 0x1'0000; // of a kind

uint32_t pceps;
uint32_t groups;

std::string system_of(const void *handle)
{
    return handle == scripted::sys_handle ? "sys" : text("%p", handle);
}

ork_rc binding_call(const char *function, const void *sys_handle, const ork_bind_params *params)
{
    keep_record(function, params, sizeof *params);
    return static_cast<ork_rc>(
        logged_result(function, text("%s, id %u", system_of(sys_handle).c_str(), params->pcep_id)));
}

ork_rc member_call(const char *function, const void *ork_handle, uint64_t group_handle, uint32_t pcep_id)
{
    return static_cast<ork_rc>(logged_result(
        function, text("%s, %s, id %u", ork_text(ork_handle).c_str(), handle_text(group_handle).c_str(), pcep_id)));
}

void show_entry(uint32_t index, uint32_t id, uint64_t handle)
{
    if (id != 0 || handle != 0)
        transcript::add(text("> entry %u: id %u, %s", index, id, handle_text(handle).c_str()));
}

} // namespace

std::string scripted::handle_text(uint64_t handle)
{
    if (handle == refused)
        return "refused";
    if (handle - first_pcep < most_handles)
        return text("pcep %lu", handle - first_pcep);
    if (handle - first_group < most_handles)
        return text("group %lu", handle - first_group);
    return text("%#lx", handle);
}

// ---- The driver kit ----

extern "C" ork_rc ork_ebcom_pcep_create(void *ork, const ork_ebcom_pcep_params *params, uint64_t *handle)
{
    keep_record(__func__, params, sizeof *params);
    const int64_t rc = logged_result(__func__, text("%s, id %u", ork_text(ork).c_str(), params->localPcepId));
    *handle = rc ? refused : first_pcep + ++pceps;
    return static_cast<ork_rc>(rc);
}

extern "C" ork_rc ork_ebcom_pcep_delete(void *ork, uint64_t handle)
{
    return static_cast<ork_rc>(
        logged_result(__func__, text("%s, %s", ork_text(ork).c_str(), handle_text(handle).c_str())));
}

extern "C" ork_rc ork_bind(void *sys_handle, const ork_bind_params *params)
{
    return binding_call(__func__, sys_handle, params);
}

extern "C" ork_rc ork_unbind(void *sys_handle, const ork_bind_params *params)
{
    return binding_call(__func__, sys_handle, params);
}

extern "C" ork_rc ork_ebcom_multicast_group_create(void *ork, const ork_ebcom_multicast_group *group, uint64_t *handle,
                                                   uint64_t scheduler)
{
    keep_record(__func__, group, sizeof *group);
    const int64_t rc =
        logged_result(__func__, text("%s, id %u, scheduler %#lx", ork_text(ork).c_str(), group->pcep_id, scheduler));
    *handle = rc ? refused : first_group + ++groups;
    return static_cast<ork_rc>(rc);
}

extern "C" ork_rc ork_ebcom_multicast_group_delete(void *ork, uint64_t handle)
{
    return static_cast<ork_rc>(
        logged_result(__func__, text("%s, %s", ork_text(ork).c_str(), handle_text(handle).c_str())));
}

extern "C" ork_rc ork_ebcom_multicast_member_add(void *ork, uint64_t group_handle, uint32_t pcep_id)
{
    return member_call(__func__, ork, group_handle, pcep_id);
}

extern "C" ork_rc ork_ebcom_multicast_member_rem(void *ork, uint64_t group_handle, uint32_t pcep_id)
{
    return member_call(__func__, ork, group_handle, pcep_id);
}

// ---- The companion library ----

// Asks for every index of the table and for some far outside it. An entry that answers 0 to both is not shown.
extern "C" uint32_t kel_init_dump_ork_handles(void *destination, const char *title, uint32_t count,
                                              uint32_t (*id_get)(uint32_t index),
                                              uint64_t (*handle_get)(uint32_t index))
{
    const int64_t rc = logged_result(__func__, text("%p, %s, %u", destination, title, count));
    for (uint32_t index = 0; index < 1024; ++index)
        show_entry(index, id_get(index), handle_get(index));
    for (const uint32_t index : {0x1'0001U, 0x8000'0001U, UINT32_MAX})
        show_entry(index, id_get(index), handle_get(index));
    return static_cast<uint32_t>(rc);
}
