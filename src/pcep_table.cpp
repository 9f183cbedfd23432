// The table and its look-ups.
#include "pcep_table.h"

#include <cstring>

using namespace kel;

pcep_entry kel::pcep_table[highest_pcep_id + 1];
uint8_t kel::multicast_groups;

bool kel::is_valid_id(uint32_t pcep_id)
{
    return pcep_id >= 1 && pcep_id <= highest_pcep_id;
}

uint32_t kel::pcep_table_id(uint32_t index)
{
    return index <= highest_pcep_id ? pcep_table[index].pcep_id : 0;
}

uint64_t kel::pcep_table_handle(uint32_t index)
{
    return index <= highest_pcep_id ? pcep_table[index].handle : 0;
}

void kel::forget_group(pcep_entry &group)
{
    --multicast_groups;
    group = {};
}

void kel::clear_pcep_table()
{
    memset(pcep_table, 0, sizeof pcep_table);
}
