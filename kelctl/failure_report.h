// A failed operation, told in full: what was called, what it answered, and what the library traced meanwhile.
#pragma once

#include "kelctl/operation.h"
#include "kelctl/terminal.h"

#include <string>

namespace kelctl
{

// Ends with a line end. Without a tracer the report says that there are no records.
std::string report_of(const failure &failure, bool tracer_installed, const painter &paint);

} // namespace kelctl
