// Counters as text of 80 columns, and as named values.
#pragma once

#include "kelctl/node/statistics.h"
#include "kelctl/session/result.h"
#include "kelctl/terminal/terminal.h"

#include <string>

namespace kelctl
{

// The service's counters, a row for each queue, a column for each PCEP. Ends with an empty line.
std::string statistics_view(const statistics &read, const painter &paint);

// The same for programs: the formatting library's texts as they are.
fields statistics_fields(const statistics &read);

// A queue's counters by the record's names.
fields counters_of(const ebcom_queue_stats &stats);

} // namespace kelctl
