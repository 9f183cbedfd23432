// Rates between two samples of the counters: what the live view shows. Its columns are views/counter_tables.cpp.
//
//     const fields rates = rates_between(first, before, now);
//     rates.at("queues")[0].at("sent").at("frames_per_second")
#pragma once

#include "kelctl/node/sample.h"
#include "kelctl/results/result.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// What passed between two samples: virtual time where any did, and real time where none did or where there is none.
struct passed_time {
    time_base base;
    uint64_t nanoseconds; // not 0
};
passed_time passed_between(const fields &before, const fields &now);

// The document of a step in docs/kelctl-json.md. `first`: the sample with which the watch began. A queue or a PCEP that
// only one of the samples has is left out.
fields rates_between(const fields &first, const fields &before, const fields &now);

// What rates can be sorted by: "rate", "dropped".
std::vector<std::string> rate_keys();

// The same with the largest values first, those of queues, of PCEPs and of delays; rows without that value come last.
fields sorted_rates(fields rates, std::string_view key);

} // namespace kelctl
