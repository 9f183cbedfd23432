// Counters and rates as people read them: tables with titles of their own in place of the names that programs know.
#pragma once

#include "kelctl/session/result.h"

namespace kelctl
{

// Of what read_statistics() read. What is not there is left out.
fields statistics_tables(const fields &read);

// Of rates_between().
fields rates_tables(const fields &rates);

} // namespace kelctl
