// Steps as the proofs write them down.
//
//     script{ebcom_start(), path(operation::path_add, on_ob, 6), path(operation::path_rem, on_ob, 6)}
#pragma once

#include "step.h"

#include <algorithm>
#include <array>

namespace proof
{

using mac_bytes = std::array<uint8_t, 6>;

// Their bytes 2 and 3 tell their locations.
inline constexpr mac_bytes on_ob = {0x02, 0x00, 0x00, 0x02, 0x00, 0x01};
inline constexpr mac_bytes also_on_ob = {0x02, 0x00, 0x00, 0x02, 0x00, 0x02};
inline constexpr mac_bytes on_hsfp = {0x02, 0x00, 0x00, 0x03, 0x00, 0x03};
inline constexpr mac_bytes on_eioa = {0x02, 0x00, 0x00, 0x09, 0x00, 0x04};
inline constexpr mac_bytes on_cpu = {0x02, 0x00, 0x94, 0x00, 0x00, 0x05};
inline constexpr mac_bytes on_mp_7 = {0x02, 0x00, 0x07, 0x00, 0x00, 0x06};
inline constexpr mac_bytes on_mp_0 = {0x02, 0x00, 0x00, 0x00, 0x00, 0x07};

inline step plain(operation what)
{
    return {.what = what};
}

inline step ebcom_start()
{
    return plain(operation::ebcom_start);
}

inline step path(operation what, const mac_bytes &mac, int32_t port, uint32_t rate = 0, uint32_t burst = 0,
                 uint32_t threshold = 0)
{
    step result = plain(what);
    std::ranges::copy(mac, result.path.dst_mac);
    result.path.iell_port = port;
    result.path.shaping_enabled = rate ? 1 : 0;
    result.path.shaping_rate = rate;
    result.path.burst_size = burst;
    result.path.buffer_threshold = threshold;
    return result;
}

inline step add(const mac_bytes &mac, int32_t port)
{
    return path(operation::path_add, mac, port);
}

inline step remove(const mac_bytes &mac, int32_t port)
{
    return path(operation::path_rem, mac, port);
}

inline step about(operation what, uint32_t id, uint32_t other_id = 0)
{
    step result = plain(what);
    result.id = id;
    result.other_id = other_id;
    return result;
}

inline step text(operation what, const mac_bytes &mac, uint32_t format = 3, uint32_t length = 512, uint32_t id = 7)
{
    step result = path(what, mac, 6);
    result.id = id;
    result.format = format;
    result.length = length;
    return result;
}

// VLAN 0x1123, of which 0x123 counts, and priority 0x0D, of which 5 counts.
inline step pcep(uint32_t id, const mac_bytes &local, const mac_bytes &remote = on_eioa)
{
    step result = about(operation::pcep_add, id);
    result.pcep = {.remote_pcep_id = {0xEF, 0xCD, 0xAB},
                   .reserved3 = 0x3C,
                   .local_mac = {},
                   .remote_mac = {},
                   .vlan_id = 0x1123,
                   .priority = 0x0D,
                   .byte19 = 0x5A,
                   .word20 = 0x7B6C,
                   .rest = {}};
    std::ranges::copy(local, result.pcep.local_mac);
    std::ranges::copy(remote, result.pcep.remote_mac);
    return result;
}

inline step classify_all_as(std::optional<uint32_t> location)
{
    step result = plain(operation::classify_all_as);
    result.location = location;
    return result;
}

inline step mpid(std::optional<std::string> text)
{
    step result = plain(operation::set_mpid);
    result.mpid = std::move(text);
    return result;
}

inline step queue_record(uint64_t rate, uint32_t burst, uint32_t mode)
{
    step result = plain(operation::set_queue_record);
    result.queue = {rate, burst, mode};
    return result;
}

inline step reading(operation what, int64_t cycles, uint32_t frequency)
{
    step result = plain(what);
    result.reading = {cycles, frequency};
    return result;
}

inline step event(operation what, uint32_t type, int32_t domain = 0)
{
    step result = plain(what);
    result.event = {type, 0, domain};
    return result;
}

inline step failing(step step, const std::string &function, int64_t result, uint32_t call = 1, uint32_t times = 1)
{
    step.faults.push_back({function, call, result, times});
    return step;
}

inline step failing_on_thread(step step, const std::string &function, int64_t result, uint32_t call = 1)
{
    step.thread_faults.push_back({function, call, result, 1});
    return step;
}

inline script operator+(script first, const script &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

inline script times(uint32_t count, const step &step)
{
    return script(count, step);
}

} // namespace proof
