// Records with chosen times, as a reader would hand them on.
#pragma once

#include "kel-trace/reading/record.h"

namespace kel_trace
{

inline record made_up(event event, std::string_view message, int64_t time = 0, thread_key of = {0, 10, 11})
{
    return {time, of, event, "com_vantorix_ob_kel_event", "kel_ic_pcep.cpp:7", "PCEP", message};
}

} // namespace kel_trace
