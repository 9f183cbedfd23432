// Scripts from arbitrary octets, for generators that know nothing of operations: every octet means something, smaller
// ones mean something simpler, and any part of a script is a script.
#pragma once

#include "step.h"

#include <array>
#include <cstdint>
#include <span>

namespace proof
{

// The operation, two of its arguments, and two faults: which of the step's outside calls, and which of its codes.
using choice = std::array<uint8_t, 7>;

// The script, without what the operations promise nothing for. The model says which calls there are to fail.
script written_out(std::span<const choice> choices);

} // namespace proof
