// Which text format a client wants: the header Accept.
#pragma once

#include "kel-exporter/metrics/metrics_text.h"

#include <string_view>

namespace kel_exporter
{

// OpenMetrics where it is accepted by its name and preferred to text/plain, or as much; else the classic format, also
// for a header that accepts neither.
text_format accepted_format(std::string_view accept);

} // namespace kel_exporter
