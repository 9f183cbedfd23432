// The reader of [[traffic]].
#pragma once

#include "kelctl/table_reader.h"
#include "kelctl/traffic_entry.h"

namespace kelctl
{

// Usable when it notes no problems.
traffic_entry read_traffic(table_reader &traffic);

} // namespace kelctl
