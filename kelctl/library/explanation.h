// Why an operation failed: the call that refused, found in the operation's trace records. The library's return code
// alone does not show it: it is the same for all refusals of the driver kit.
//
//     refused by the driver kit: ork_qos_scheduler_create, code -7 (0xfffffff9): internal error
//
// The report around it is results/failure_report.h.
#pragma once

#include "kelctl/library/library_call.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kelctl
{

struct explanation {
    std::string by;              // whose refusal it is: "driver kit", "companion library", ... or "library itself"
    std::string what;            // the function that refused, or what the library itself did not accept; may be empty
    std::optional<int64_t> code; // the refusing library's own; none when the records do not have it
    std::string text;            // its text
};

// None without records, and when no record names the call.
std::optional<explanation> explanation_of(const failure &failed);

} // namespace kelctl
