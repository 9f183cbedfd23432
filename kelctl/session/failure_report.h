// A failed operation, told in full: what was called, what it answered, and what the library traced meanwhile.
#pragma once

#include "kelctl/library/library_call.h"
#include "kelctl/session/fields_view.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// The records come first, so that the answer stays on the screen. Ends with a line end. Without a tracer the report says that there are no records. `place` is put in front.
std::string report_of(const failure &failure, bool tracer_installed, const page &page, std::string_view place = "");

// "it succeeded, but ...", and the records that report failures, which follow in lines further in.
std::string complaints_text(std::string_view what, const std::vector<trace_entry> &complaints, const page &page);

// Each in a line further in.
std::string records_text(const std::vector<trace_entry> &records, const page &page);

} // namespace kelctl
