// A failed operation, told in full: what was called, what it answered, and what the library traced meanwhile.
#pragma once

#include "kelctl/library/library_call.h"
#include "kelctl/terminal/terminal.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// Where a report is shown.
struct report_page {
    painter paint;
    std::optional<size_t> width = {}; // of its lines; none: as long as they are
};

report_page page_for(std::FILE *stream);

// Ends with a line end. Without a tracer the report says that there are no records. `place` is put in front.
std::string report_of(const failure &failure, bool tracer_installed, const report_page &page,
                      std::string_view place = "");

} // namespace kelctl
