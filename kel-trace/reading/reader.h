// Recordings on disk: every trace below some folders, read as one, in order of time. What the records mean is
// operations/.
//
//     recording found;
//     read({"field"}, {}, found, [](const record &one) { show(one.time, one.message); });
//     if (!found.complete())
//         warn(found.discarded_records);
#pragma once

#include "kel-trace/reading/record.h"
#include "kel-trace/reading/recording.h"

#include <string>
#include <vector>

namespace kel_trace
{

// Hands every record of our providers to `take`. `found` is filled along the way. Throws `unreadable`.
void read(const std::vector<std::string> &folders, const reading_options &options, recording &found,
          const record_taker &take);

} // namespace kel_trace
