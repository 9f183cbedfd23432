// The tables of counters and rates that people see: columns with titles, chosen from the documents that programs get.
// Add a column of the live view here; its value comes from node/rates.cpp.
#pragma once

#include "kelctl/results/result.h"

namespace kelctl
{

// For the result of read_statistics() (node/statistics.h). Counters that could not be read are left out.
fields statistics_tables(const fields &read);

// For the result of rates_between() (node/rates.h): one step of the live view.
fields rates_tables(const fields &rates);

// Adds the columns of a queue's delays to a row: of "median", "p99" and "largest" in `delays`, in nanoseconds.
void add_delays(fields &row, const fields &delays);

} // namespace kelctl
