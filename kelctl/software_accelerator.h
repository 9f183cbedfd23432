// The software accelerator's own services, where the process runs on it. On a vendor's platform every one of them
// answers that there is nothing. The only place that knows softnode.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kelctl
{

// Everything that the node holds, as a JSON document.
std::optional<std::string> accelerator_snapshot();

// Waits until the timestamp thread has done all that there was to do, or has ended. False when that cannot be told
// here, or did not come within the time.
bool timing_settled(uint32_t milliseconds);

} // namespace kelctl
