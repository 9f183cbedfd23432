// The reader of [[traffic]].
#pragma once

#include "kelctl/accelerator/traffic_entry.h"
#include "kelctl/nodefile/table_reader.h"

namespace kelctl
{

// Usable when it notes no problems.
traffic_entry read_traffic(table_reader &traffic);

} // namespace kelctl
