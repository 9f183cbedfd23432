// Counters as text of 80 columns.
#pragma once

#include "kelctl/statistics.h"
#include "kelctl/terminal.h"

#include <string>

namespace kelctl
{

// The service's counters, a row for each queue, a column for each PCEP. Ends with an empty line.
std::string statistics_view(const statistics &read, const painter &paint);

} // namespace kelctl
