// Recordings on disk: every trace below some folders, read as one, in order of time.
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
