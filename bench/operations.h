// Every exported operation, ready to be measured over the null platform: through the library, and as the bare calls
// that it represents. What takes away follows in one row what added, so that a row can be repeated without end.
#pragma once

#include <cstdint>
#include <span>

struct operation {
    const char *name;
    void (*library)(uint64_t times);
    void (*bare)(uint64_t times);
    bool brings_up = false;      // a service up and down itself; every other one acts upon services_up()
    uint64_t most_at_a_time = 0; // repetitions; 0: no limit
};

std::span<const operation> operations();

// The count table, which the first start makes for good. To be called once, before anything else.
void make_tables();

// Both services, and one path, one PCEP and one multicast group that exist while others come and go: in the library
// and for the bare calls.
void services_up();
void services_down();
