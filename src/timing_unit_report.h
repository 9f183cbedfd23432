// The report of a failed call of the timing-unit client, which numbers its codes like the driver kit. Part of the frame of
// an operation.
#pragma once

#include "call_frame.h"

#include <cstdint>
#include <cstdio>
#include <iterator>

namespace kel
{

constexpr size_t ork_rc_text_size = 20;

// The text of a code that is numbered like the driver kit's, written into the caller's text.
inline const char *ork_rc_to_str(int32_t rc, char (&text)[ork_rc_text_size])
{
    constexpr const char *names[] = {"OK",       "INVAL",    "UNSUPP",   "NOPORT",   "AGAIN(try again)",
                                     "SHUTDOWN", "NODOMAIN", "INTERNAL", "NOTAVAIL", "OUTOFRANGE"};
    if (rc <= 0 && rc > -static_cast<int32_t>(std::size(names)))
        snprintf(text, sizeof text, "%s", names[-rc]);
    else
        snprintf(text, sizeof text, "%s(%d)", "UNK_RET_VAL", rc);
    return text;
}

// A call of the timing-unit client failed.
inline uint32_t report_timing_unit(call_site site, int32_t rc, const char *callee)
{
    char text[ork_rc_text_size];
    TRACE_AT(site.general(), EXCEPTION, "%s returned %s", callee, ork_rc_to_str(rc, text));
    return KEL_RC_FAILED;
}

} // namespace kel
