// Runs a step on the real library over the scripted platform, and gathers what can be seen of it.
#pragma once

#include "model.h"

namespace proof
{

// `expected` has performed the step already, with this outcome: it says which timestamp threads to wait for.
outcome perform_on_library(const step &step, const model &expected, const outcome &expected_outcome);

// The records that were handed over to this function in the latest step.
std::vector<octets> handed_over(const std::string &function);

} // namespace proof
