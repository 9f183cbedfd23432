// Why an operation failed: the call that refused, found in the operation's trace records.
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
    std::optional<int64_t> code; // the refusing library's own; none when the records do not tell
    std::string text;            // its text
};

// None without records, and when they do not tell.
std::optional<explanation> explanation_of(const failure &failed);

} // namespace kelctl
