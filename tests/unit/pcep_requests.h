// PCEPs as the tests make them, and what the transcripts of their operations have in common.
//
//     pcep_service_up();
//     EXPECT_EQ(add_pcep(7, on_hsfp, on_ob), 0U);
//     expect_entries({"7: id 7, pcep 1"});
#pragma once

#include "kel/kel_core_ic_pcep.h"
#include "scripted_platform.h"

#include <array>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

// A side of a PCEP: its bytes 2 and 3 tell its location.
struct pcep_side {
    std::array<uint8_t, 6> mac;
    const char *mac_text;
    const char *location;
};
inline constexpr pcep_side on_cpu = {{0x12, 0x13, 0x94, 0x00, 0x15, 0x16}, "12:13:94:00:15:16", "CPU"};
inline constexpr pcep_side on_ob = {{0x22, 0x23, 0x24, 0x02, 0x25, 0x26}, "22:23:24:02:25:26", "OB"};
inline constexpr pcep_side on_hsfp = {{0x32, 0x33, 0x34, 0x03, 0x35, 0x36}, "32:33:34:03:35:36", "HSFP"};
inline constexpr pcep_side on_eioa = {{0x42, 0x43, 0x44, 0x09, 0x45, 0x46}, "42:43:44:09:45:46", "EIOA"};
inline constexpr pcep_side sides[] = {on_cpu, on_ob, on_hsfp, on_eioa};

// GoogleTest shows a side by its location.
void PrintTo(const pcep_side &shown, std::ostream *out);

// VLAN 0x123 (291) with priority 5, remote PCEP 0xABCDEF (11259375), and other values wherever something is read.
kel_pcep_config between(const pcep_side &local, const pcep_side &remote);

// Starts the service and forgets how.
void pcep_service_up();

// Operations that a test needs and does not look at: they succeed and are forgotten.
void make_pcep(uint32_t pcep_id, const pcep_side &local = on_ob);
void make_group(uint32_t mc_pcep_id);
void make_groups(uint32_t first, uint32_t last);
void make_members(uint32_t mc_pcep_id, uint32_t uc_pcep_id, uint32_t times);

uint32_t add_pcep(uint32_t pcep_id, const pcep_side &local = on_ob, const pcep_side &remote = on_eioa);

// What the handle dump shows, which is all entries with an id or a handle. Forgets the transcript so far.
void expect_entries(const std::vector<std::string> &entries);

// A record of zeros but for the octets given with their offsets.
using scripted::octets;
octets record(size_t size, const std::vector<std::pair<size_t, octets>> &parts);

namespace expected
{

// The end of an operation of the PCEP side.
inline const std::string left = R"(
          FN_EXIT PCEP
)";

// The whole of an operation that ends with one refusal of its own and makes no call.
std::string refusal(const std::string &operation, uint32_t rc, const std::string &detail);

// A refused call of the driver kit, from its result on: " = -4" and the lines after it.
std::string refused(const std::string &call, int32_t rc);

} // namespace expected
