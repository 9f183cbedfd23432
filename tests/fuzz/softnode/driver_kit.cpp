/*
 * driver_kit.cpp - calls of the driver kit.
 */
#include "caller.h"

#include "platform/ork.h"

#include <array>

namespace
{

void get_system(Caller &caller)
{
    void *system = nullptr;
    if (in_order(ork_syshandle_get, {caller.octet(), caller.octet(), caller.maybe(system)}) == ORK_OK)
        caller.keep(system_handle, system);
}

void get_status(Caller &caller)
{
    require(in_order(ork_sys_status_get, {caller.pointer(system_handle), caller.input.take<std::int32_t>()}) !=
            nullptr);
}

void set_globals(Caller &caller)
{
    const auto globals = caller.record(ork_ebcom_global_config{1500, 0x88b5, 0x21, 0});
    in_order(ork_ebcom_global_config_set, {caller.pointer(driver_kit), caller.maybe(globals)});
}

void create_interface(Caller &caller)
{
    in_order(ork_ebcom_interface_create, {caller.pointer(driver_kit), caller.device()});
}

void delete_interface(Caller &caller)
{
    in_order(ork_ebcom_interface_delete, {caller.pointer(driver_kit), caller.device()});
}

void set_offset(Caller &caller)
{
    in_order(ork_ebcom_timestamp_offset_set, {caller.pointer(driver_kit), caller.input.take<std::int64_t>()});
}

void create_path(Caller &caller)
{
    auto path = caller.record(ork_ebcom_pcep_path{{2, 0, 0, 2, 0, caller.octet()}, 1, 0, nullptr});
    path.queue_hdl = caller.pointer(queue);
    in_order(ork_ebcom_pcep_path_create, {caller.pointer(driver_kit), caller.maybe(path)});
}

void delete_path(Caller &caller)
{
    const auto path = caller.record(ork_ebcom_pcep_path{{2, 0, 0, 2, 0, caller.octet()}, 1, 0, nullptr});
    in_order(ork_ebcom_pcep_path_delete, {caller.pointer(driver_kit), caller.maybe(path)});
}

void read_globals(Caller &caller)
{
    ebcom_global_stats stats{};
    in_order(ork_ebcom_global_statistics_get, {caller.pointer(driver_kit), caller.maybe(stats)});
}

void create_pcep(Caller &caller)
{
    ork_ebcom_pcep_params good{};
    good.dMac[5] = caller.octet();
    good.localPcepId = caller.id();
    good.byte28 = 1;
    const auto params = caller.record(good);
    std::uint64_t created = 0;
    if (in_order(ork_ebcom_pcep_create, {caller.pointer(driver_kit), caller.maybe(params), caller.maybe(created)}) ==
        ORK_OK)
        caller.keep(pcep, created);
}

void delete_pcep(Caller &caller)
{
    in_order(ork_ebcom_pcep_delete, {caller.pointer(driver_kit), caller.handle(pcep)});
}

void read_pcep(Caller &caller)
{
    ebcom_pcep_stats stats{};
    in_order(ork_ebcom_pcep_statistics_get, {caller.pointer(driver_kit), caller.handle(pcep), caller.maybe(stats)});
}

ork_bind_params binding(Caller &caller)
{
    ork_bind_params good{};
    good.word0 = 4;
    good.word4 = 1;
    good.word8 = 1;
    good.ork_handle = caller.pointer(driver_kit);
    good.pcep_id = caller.id();
    good.word36 = 2;
    good.target = caller.handle(target);
    good.word60 = 2;
    good.byte84 = 1;
    return caller.record(good);
}

void bind(Caller &caller)
{
    const ork_bind_params params = binding(caller);
    in_order(ork_bind, {caller.pointer(system_handle), caller.maybe(params)});
}

void unbind(Caller &caller)
{
    const ork_bind_params params = binding(caller);
    in_order(ork_unbind, {caller.pointer(system_handle), caller.maybe(params)});
}

void create_group(Caller &caller)
{
    const auto params = caller.record(ork_ebcom_multicast_group{static_cast<std::uint16_t>(caller.id()), {}});
    const std::uint64_t through = caller.input.below(2) == 0 ? 0 : caller.handle(scheduler);
    std::uint64_t created = 0;
    if (in_order(ork_ebcom_multicast_group_create,
                 {caller.pointer(driver_kit), caller.maybe(params), caller.maybe(created), through}) == ORK_OK)
        caller.keep(group, created);
}

void delete_group(Caller &caller)
{
    in_order(ork_ebcom_multicast_group_delete, {caller.pointer(driver_kit), caller.handle(group)});
}

void add_member(Caller &caller)
{
    in_order(ork_ebcom_multicast_member_add, {caller.pointer(driver_kit), caller.handle(group), caller.id()});
}

void remove_member(Caller &caller)
{
    in_order(ork_ebcom_multicast_member_rem, {caller.pointer(driver_kit), caller.handle(group), caller.id()});
}

void create_scheduler(Caller &caller)
{
    ork_qos_scheduler_params good{};
    good.schedulingMode = caller.seldom() ? 0 : 11;
    good.arbitrationMode = 7;
    good.vsiEthDevId = caller.device();
    auto params = caller.record(good);
    params.parent = caller.input.below(2) == 0 ? nullptr : caller.pointer(scheduler);
    void *created = nullptr;
    if (in_order(ork_qos_scheduler_create, {caller.pointer(driver_kit), caller.maybe(params), caller.seldom() ? 1U : 0U,
                                            caller.maybe(created)}) == ORK_OK)
        caller.keep(scheduler, created);
}

void delete_scheduler(Caller &caller)
{
    in_order(ork_qos_scheduler_delete, {caller.pointer(driver_kit), caller.pointer(scheduler)});
}

void read_queue(Caller &caller)
{
    ork_qos_queue found{};
    in_order(ork_qos_queue_get, {caller.pointer(driver_kit), caller.pointer(queue), caller.maybe(found)});
}

constexpr std::array<Step, 21> steps{{get_system,   get_status,  set_globals,   create_interface, delete_interface,
                                      set_offset,   create_path, delete_path,   read_globals,     create_pcep,
                                      delete_pcep,  read_pcep,   bind,          unbind,           create_group,
                                      delete_group, add_member,  remove_member, create_scheduler, delete_scheduler,
                                      read_queue}};

} // namespace

std::span<const Step> driver_kit_steps()
{
    return steps;
}
