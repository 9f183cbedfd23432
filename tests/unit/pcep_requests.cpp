#include "pcep_requests.h"

#include "expected.h"
#include "script.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

using expected::with;

void PrintTo(const pcep_side &shown, std::ostream *out)
{
    *out << shown.location;
}

kel_pcep_config between(const pcep_side &local, const pcep_side &remote)
{
    kel_pcep_config config = {.remote_pcep_id = {0xEF, 0xCD, 0xAB},
                              .reserved3 = 0x3C,
                              .local_mac = {},
                              .remote_mac = {},
                              .vlan_id = 0x123,
                              .priority = 5,
                              .byte19 = 0x5A,
                              .word20 = 0x7B6C,
                              .rest = {}};
    std::ranges::copy(local.mac, config.local_mac);
    std::ranges::copy(remote.mac, config.remote_mac);
    std::ranges::fill(config.rest, uint8_t{0xE7});
    return config;
}

void pcep_service_up()
{
    ASSERT_EQ(kel_core_ic_pcep_start(), 0U);
    transcript::forget();
}

void make_pcep(uint32_t pcep_id, const pcep_side &local)
{
    ASSERT_EQ(add_pcep(pcep_id, local), 0U) << pcep_id;
    transcript::forget();
}

void make_group(uint32_t mc_pcep_id)
{
    ASSERT_EQ(kel_core_ic_pcep_mc_group_add(mc_pcep_id), 0U) << mc_pcep_id;
    transcript::forget();
}

void make_groups(uint32_t first, uint32_t last)
{
    for (uint32_t id = first; id <= last; ++id)
        make_group(id);
}

void make_members(uint32_t mc_pcep_id, uint32_t uc_pcep_id, uint32_t times)
{
    for (uint32_t n = 1; n <= times; ++n)
        ASSERT_EQ(kel_core_ic_pcep_mc_member_add(mc_pcep_id, uc_pcep_id), 0U) << n;
    transcript::forget();
}

uint32_t add_pcep(uint32_t pcep_id, const pcep_side &local, const pcep_side &remote)
{
    const kel_pcep_config config = between(local, remote);
    return kel_core_ic_pcep_add(pcep_id, &config);
}

void expect_entries(const std::vector<std::string> &entries)
{
    std::string shown = R"(
          > kel_init_dump_ork_handles((nil), PCEP Handles, 511)
    )";
    for (const std::string &entry : entries)
        shown += "\n          > entry " + entry;
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_handle_dump(nullptr), 0U);
    transcript::expect(shown);
}

octets record(size_t size, const std::vector<std::pair<size_t, octets>> &parts)
{
    octets result(size);
    for (const auto &[offset, part] : parts)
        std::ranges::copy(part, result.begin() + static_cast<ptrdiff_t>(offset));
    return result;
}

std::string expected::refusal(const std::string &operation, uint32_t rc, const std::string &detail)
{
    return with({operation, std::to_string(rc), detail}, R"(
        $1:
          FN_ENTER PCEP
          ~ kei_util_init_rc_str_get($2)
          init:EXCEPTION GENERAL code $2, $3
          FN_EXIT PCEP
    )");
}

std::string expected::refused(const std::string &call, int32_t rc)
{
    return with({std::to_string(rc), scripted::text("%x", static_cast<uint32_t>(rc)), call}, R"( = $1
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get($1)
          init:EXCEPTION GENERAL 0x$2 - status $1, $3
          FN_EXIT PCEP
    )");
}
