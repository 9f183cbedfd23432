// The table of PCEPs and multicast groups by id, and the number of groups. The driver kit owns the objects; the table
// is this library's only record of their handles. Used by one thread at a time. Nothing here traces.
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

extern pcep_entry pcep_table[highest_pcep_id + 1]; // by id, from 1; entry 0 is never used

// The number of groups. A stop does not reset it, and one delete too many wraps it to 255: callers rely on both.
extern uint8_t multicast_groups;

// True for 1 to highest_pcep_id.
bool is_valid_id(uint32_t pcep_id);

// For the handle dump: an entry's id and handle; 0 for an index beyond the table.
uint32_t pcep_table_id(uint32_t index);
uint64_t pcep_table_handle(uint32_t index);

// Clears the entry and counts one group less, whatever the entry was.
void forget_group(pcep_entry &group);

// Clears every entry. Objects in the driver kit, and the number of groups, stay.
void clear_pcep_table();

} // namespace kel
