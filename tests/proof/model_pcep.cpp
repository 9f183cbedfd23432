// Locations, PCEPs, multicast groups and members.
#include "model.h"
#include "scripted_pcep.h"
#include "scripted_platform.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace proof
{
namespace
{

constexpr const char *pcep = "PCEP";

// What the scripted driver kit hands out, and what it leaves where it refuses.
constexpr uint64_t first_pcep = 0x8CE9'0000'0000'0000;
constexpr uint64_t first_group = 0x96A9'0000'0000'0000;
constexpr uint64_t refused = 0xDEAD'0000'0000'BEEF;

bool valid(uint32_t id)
{
    return id >= 1 && id <= 511;
}

template <typename Value> void put(octets &record, size_t offset, Value value)
{
    memcpy(&record[offset], &value, sizeof value);
}

} // namespace

std::string pcep_handle_text(uint64_t handle)
{
    return scripted::handle_text(handle);
}

const model::pcep_entry &model::entry_of(uint32_t id) const
{
    static const pcep_entry free;
    const auto found = pceps_.find(id);
    return found == pceps_.end() ? free : found->second;
}

const char *model::ork() const
{
    return attached_ ? "ork" : "(nil)";
}

// ---- Locations ----

uint8_t model::own_mp_id()
{
    if (mp_id_)
        return mp_id_;
    const account::speaker speaker(tell_, "own_mp_id_get", pcep);
    if (!mpid_) {
        tell_.record("ERROR", "Failed to get environment variable MPID");
        return 0;
    }
    mp_id_ = static_cast<uint8_t>(strtol(mpid_->c_str(), nullptr, 10) % 256);
    tell_.record("INFO", format("MPID = %s (%d)", mpid_->c_str(), mp_id_));
    return mp_id_;
}

uint32_t model::classified(const uint8_t *mac, uint32_t &location, uint32_t &type)
{
    if (const int64_t code = tell_.unseen_call("kel_ic_pcep_get_location_and_type_from_branch"))
        return static_cast<uint32_t>(code);
    location = 4;
    type = 0;
    if (location_) {
        location = *location_;
        type = 0x7E57;
    } else if (mac[3] == 2 || mac[3] == 3) {
        location = mac[3];
        type = 2;
    } else if (mac[3] == 0 && (mac[2] >= 0x80 || mac[2] == own_mp_id())) {
        location = 1;
        type = 1;
    }
    return 0;
}

uint32_t model::classify(const step &step)
{
    uint32_t location = 0xA5A5'A5A5;
    uint32_t type = 0xA5A5'A5A5;
    const uint32_t code = classified(step.path.dst_mac, location, type);
    output(location, type);
    return code;
}

// ---- Start, stop and the dump ----

uint32_t model::pcep_start(const step &)
{
    pceps_.clear();
    return operation_of("kel_core_ic_pcep_start", pcep, [&] {
        tell_.require(static_cast<uint32_t>(tell_.call("kel_init_attach", "")), "kel_init_attach");
        attached_ = true;
        constexpr const char *hook = "kel_core_ic_pcep_create_queue_and_scheduler_for_multicast";
        tell_.require(static_cast<uint32_t>(tell_.unseen_call(hook)), hook);
    });
}

uint32_t model::pcep_stop(const step &)
{
    return operation_of("kel_core_ic_pcep_stop", pcep, [&] {
        attached_ = false;
        pceps_.clear();
    });
}

uint32_t model::pcep_dump(const step &)
{
    tell_.call("kel_init_dump_ork_handles", "(nil), PCEP Handles, 511");
    for (const auto &[index, entry] : pceps_)
        if (entry.id || entry.handle)
            tell_.line(format("entry %u: id %u, ", index, entry.id) + pcep_handle_text(entry.handle));
    return 0;
}

uint32_t model::multicast_hook(const step &)
{
    output(uint64_t{0xA5A5'A5A5'A5A5'A5A5}, uint64_t{0xA5A5'A5A5'A5A5'A5A5});
    return static_cast<uint32_t>(tell_.unseen_call("kel_core_ic_pcep_create_queue_and_scheduler_for_multicast"));
}

// ---- Unicast ----

uint32_t model::pcep_add(const step &step)
{
    return operation_of("kel_core_ic_pcep_add", pcep, [&] {
        const kel_pcep_config &config = step.pcep;
        if (!valid(step.id))
            tell_.refuse(3, "(pcep_id)");
        if (entry_of(step.id).id)
            tell_.refuse(5, "(pcep_id)");
        uint32_t local = 0;
        uint32_t remote = 0;
        uint32_t type = 0;
        tell_.require(classified(config.local_mac, local, type), "get_pcep_location_and_type_from_branch(local)");
        tell_.require(classified(config.remote_mac, remote, type), "get_pcep_location_and_type_from_branch(remote)");

        const uint32_t vlan = config.vlan_id % 4096U;
        const uint32_t remote_id =
            config.remote_pcep_id[0] + config.remote_pcep_id[1] * 256U + config.remote_pcep_id[2] * 65536U;
        octets record(40);
        memcpy(&record[0], config.local_mac, 6);
        memcpy(&record[6], config.remote_mac, 6);
        put(record, 12, static_cast<uint16_t>(vlan + config.priority % 8U * 4096U));
        put(record, 16, step.id);
        put(record, 20, config.byte19 + remote_id * 256U);
        put(record, 24, config.word20);
        record[28] = 1;
        tell_.hand_over("ork_ebcom_pcep_create", record);
        tell_.text_call("macAddr2str", text_of_mac(config.local_mac));
        tell_.text_call("macAddr2str", text_of_mac(config.remote_mac));
        pceps_[step.id].handle = refused;
        tell_.driver_kit(format("ork_ebcom_pcep_create(localPcepId=%u, remotePcepId=%u, vlanId=%u, sMac=%s(%s), "
                                "dMac=%s(%s))",
                                step.id, remote_id, vlan, text_of_mac(config.local_mac).c_str(), location_name(local),
                                text_of_mac(config.remote_mac).c_str(), location_name(remote)),
                         "ork_ebcom_pcep_create", std::string(ork()) + format(", id %u", step.id));
        pceps_[step.id].handle = first_pcep + ++pceps_made_;
        if (local == 3)
            bind("ork_bind", "ork_bind(ID2M)", step.id);
        pceps_[step.id].location = local;
        pceps_[step.id].id = step.id;
    });
}

void model::bind(const char *function, const char *announced, uint32_t id)
{
    octets record(96);
    put(record, 0, uint32_t{4});
    put(record, 4, uint32_t{1});
    put(record, 8, uint32_t{1});
    put(record, 16, attached_ ? reinterpret_cast<uint64_t>(scripted::ork_handle) : uint64_t{0});
    put(record, 32, id);
    put(record, 36, uint32_t{2});
    put(record, 40, attached_ ? scripted::ehsfp_target : uint64_t{0});
    put(record, 60, uint32_t{2});
    record[84] = 1;
    tell_.hand_over(function, record);
    tell_.driver_kit(format("%s: PCEP_ID=%u -> EHSFP", announced, id), function,
                     format("%s, id %u", attached_ ? "sys" : "(nil)", id));
}

uint32_t model::pcep_rem(const step &step)
{
    return operation_of("kel_core_ic_pcep_rem", pcep, [&] {
        if (!valid(step.id))
            tell_.refuse(3, "(pcep_id)");
        const pcep_entry entry = entry_of(step.id);
        pceps_.erase(step.id); // whatever comes of it
        if (!entry.id)
            tell_.refuse(4, "(pcep_id)");
        if (entry.location == 5)
            tell_.refuse(7, "pcep_id is a Multicast PCEP");
        if (entry.location == 3)
            bind("ork_unbind", "ork_unbind(ID2M)", step.id);
        tell_.driver_kit(format("ork_ebcom_pcep_delete(pcep_id=%u)", step.id), "ork_ebcom_pcep_delete",
                         std::string(ork()) + ", " + pcep_handle_text(entry.handle));
    });
}

// ---- Multicast ----

uint32_t model::group_add(const step &step)
{
    return operation_of("kel_core_ic_pcep_mc_group_add", pcep, [&] {
        if (!valid(step.id))
            tell_.refuse(3, "(pcep_id)");
        if (entry_of(step.id).id)
            tell_.refuse(5, "(pcep_id)");
        if (groups_ > 29)
            tell_.refuse(10, "");
        octets record(8);
        put(record, 0, static_cast<uint16_t>(step.id));
        tell_.hand_over("ork_ebcom_multicast_group_create", record);
        pceps_[step.id].handle = refused;
        if (const int64_t code = tell_.call("ork_ebcom_multicast_group_create",
                                            std::string(ork()) + format(", id %u, scheduler 0", step.id))) {
            tell_.report_driver_kit(code, "ork_ebcom_multicast_group_create");
            throw failure{13};
        }
        ++groups_;
        pceps_[step.id] = {step.id, first_group + ++groups_made_, 5, pceps_[step.id].members};
    });
}

uint32_t model::group_rem(const step &step)
{
    return operation_of("kel_core_ic_pcep_mc_group_rem", pcep, [&] {
        if (!valid(step.id))
            tell_.refuse(3, "(pcep_id)");
        const pcep_entry entry = entry_of(step.id);
        if (entry.id && entry.location != 5)
            tell_.refuse(7, "mc_pcep_id is not a Multicast PCEP");
        if (entry.id && entry.members)
            tell_.refuse(6, "");
        --groups_; // from here on in any case, wrapping
        pceps_.erase(step.id);
        if (!entry.id)
            tell_.refuse(4, "(pcep_id)");
        tell_.driver_kit(format("ork_ebcom_multicast_group_delete(mc_pcep_id=%u)", step.id),
                         "ork_ebcom_multicast_group_delete",
                         std::string(ork()) + ", " + pcep_handle_text(entry.handle));
    });
}

void model::check_members(const step &step)
{
    if (!valid(step.id))
        tell_.refuse(3, "(pcep_id)");
    if (!entry_of(step.id).id)
        tell_.refuse(4, "(pcep_id)");
    if (!valid(step.other_id))
        tell_.refuse(3, "(pcep_id)");
    if (!entry_of(step.other_id).id)
        tell_.refuse(4, "(pcep_id)");
    if (entry_of(step.id).location != 5)
        tell_.refuse(7, "mc_pcep_id is not a Multicast PCEP");
}

uint32_t model::member_add(const step &step)
{
    return operation_of("kel_core_ic_pcep_mc_member_add", pcep, [&] {
        check_members(step);
        pcep_entry &group = pceps_[step.id];
        if (group.members > 15)
            tell_.refuse(10, "");
        tell_.driver_kit(format("ork_ebcom_multicast_member_add(mc_pcep_id=%u, uc_pcep_id=%u)", step.id, step.other_id),
                         "ork_ebcom_multicast_member_add",
                         std::string(ork()) + ", " + pcep_handle_text(group.handle) + format(", id %u", step.other_id));
        ++group.members;
    });
}

uint32_t model::member_rem(const step &step)
{
    return operation_of("kel_core_ic_pcep_mc_member_rem", pcep, [&] {
        check_members(step);
        pcep_entry &group = pceps_[step.id];
        tell_.driver_kit(format("ork_ebcom_multicast_member_rem(mc_pcep_id=%u, uc_pcep_id=%u)", step.id, step.other_id),
                         "ork_ebcom_multicast_member_rem",
                         std::string(ork()) + ", " + pcep_handle_text(group.handle) + format(", id %u", step.other_id));
        --group.members; // unguarded
    });
}

} // namespace proof
