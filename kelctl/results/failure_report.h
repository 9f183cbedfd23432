// The full report of a failed operation: the call, its return code, the call underneath that refused, and the library's
// trace records.
#pragma once

#include "kelctl/library/library_call.h"
#include "kelctl/results/fields_view.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// What failed and why. Ends with a line end. `lead` is put in front.
std::string report_of(const failure &failure, const page &page, std::string_view lead = "");

// The records of the failure, to be shown before it, so that the answer stays on the screen. Without a tracer: that
// there are none.
std::string records_of(const failure &failure, bool tracer_installed, const page &page);

// "it succeeded, but ...", and the records that report failures, which follow in lines further in.
std::string complaints_text(std::string_view what, const std::vector<trace_entry> &complaints, const page &page);

// Each in a line further in.
std::string records_text(const std::vector<trace_entry> &records, const page &page);

} // namespace kelctl
