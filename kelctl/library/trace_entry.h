// One trace record of the library, as text. Where records come from is trace_log.h; those of a recording are read by
// kel-trace.
#pragma once

#include <string>

namespace kelctl
{

// Texts of its own: the tracer's record is gone when the callback returns.
struct trace_entry {
    std::string event;    // "EXCEPTION"
    std::string domain;   // "EBCOM"
    std::string message;  // "kel_ic_ebcom_add_shaper(): limit reached, kel_init_qos_queue_add"
    std::string location; // "kel_ic_ebcom_g3.cpp:390"
};

// One line, without its end.
std::string to_text(const trace_entry &entry);

} // namespace kelctl
