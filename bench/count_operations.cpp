// Runs every operation through the library N times and then 2 N times under callgrind, which writes a file of counts
// for each of the two, named "OPERATION x N". What the second has more than the first belongs to N operations and to
// nothing else. To be run by bench/check_counts.
#include "operations.h"

#include <valgrind/callgrind.h>

#include <string>

namespace
{

constexpr uint64_t times = 20;

void count(const operation &counted, uint64_t repetitions)
{
    CALLGRIND_ZERO_STATS;
    CALLGRIND_START_INSTRUMENTATION;
    counted.library(repetitions);
    CALLGRIND_STOP_INSTRUMENTATION;
    const std::string name = counted.name + std::string(" x ") + std::to_string(repetitions);
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

} // namespace

int main()
{
    make_tables();
    for (const operation &each : operations()) {
        if (!each.brings_up)
            services_up();
        each.library(times); // what only the first ones do, such as filling the tables of the dynamic linker
        count(each, times);
        count(each, 2 * times);
        if (!each.brings_up)
            services_down();
    }
}
