// Laying trace records out.
#include "kelctl/library/trace_entry.h"

#include <fmt/core.h>

namespace kelctl
{

std::string to_text(const trace_entry &entry)
{
    return fmt::format("{:<9} {:<7} {}  ({})", entry.event, entry.domain, entry.message, entry.location);
}

} // namespace kelctl
