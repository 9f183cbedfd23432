// A sweep's report, for people and for programs.
#pragma once

#include "kelctl/results/fields_view.h"
#include "kelctl/results/result.h"
#include "kelctl/sweep/sweep.h"

#include <string>

namespace kelctl
{

// A row for each faulted call and what became of it, why what is left may be, and how many runs came out how.
std::string sweep_view(const sweep_report &report, const page &page);

// As docs/kelctl-json.md has it.
fields sweep_fields(const sweep_report &report);

} // namespace kelctl
