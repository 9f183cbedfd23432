// The table of PCEPs and multicast groups by id, and how many groups there are. Nothing here traces.
#pragma once

#include "kel/kel_core_ic_pcep.h"

#include <cstdint>

namespace kel
{

constexpr uint32_t highest_pcep_id = 511;
constexpr uint8_t max_multicast_groups = 30;
constexpr uint32_t max_group_members = 16;

struct pcep_entry {
    uint32_t pcep_id; // 0: the entry is free
    uint64_t handle;  // the driver kit's, of a PCEP or of a group
    uint32_t location;
    uint32_t member_count; // of a group
    kel_pcep_config config;
};

extern pcep_entry pcep_table[highest_pcep_id + 1]; // by id; 0 is never used

// The number of groups. It lives through every start and stop, and wraps below 0.
extern uint8_t multicast_groups;

bool is_valid_id(uint32_t pcep_id);

// What the handle dump asks for, by any index.
uint32_t pcep_table_id(uint32_t index);
uint64_t pcep_table_handle(uint32_t index);

// Clears the entry and counts one group less.
void forget_group(pcep_entry &group);

void clear_pcep_table();

} // namespace kel
