// Whether a recording of a step explains the step's failure: what its records name as having refused.
#pragma once

#include "model.h"

#include <string>

namespace proof
{

// What kel-trace would miss in the records of the step, which was tried with `faults` of calls, on its own thread or on a
// timestamp thread: a fault that a record names and that no operation is shown to have reported, or with another code; an
// operation that returned a code, or none, and is shown the other way round. "" when nothing. `named` counts the faults
// that records name.
std::string unexplained(const outcome &shown, const step &tried, size_t &named);

} // namespace proof
