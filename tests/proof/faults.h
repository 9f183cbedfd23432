// Which codes an outside call can fail with.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace proof
{

// Codes that a call of this function is made to fail with: the driver kit's, the timing unit's, the companion
// library's, or what its own manual page says. Empty for a call that cannot fail or makes text only.
const std::vector<int64_t> &codes_of(const std::string &function);

} // namespace proof
