// The weak references to the software accelerator's control functions.
#include "kelctl/software_accelerator.h"

#include "softnode/softnode.h"

#include <cstdlib>
#include <memory>

// Weak: a program linked to a vendor's libraries has none of these, and their addresses are null.
extern "C" {
__attribute__((weak)) char *softnode_snapshot_json(void);
__attribute__((weak)) int softnode_timing_settle(uint32_t milliseconds);
}

namespace kelctl
{

std::optional<std::string> accelerator_snapshot()
{
    if (!softnode_snapshot_json)
        return std::nullopt;
    const std::unique_ptr<char, void (*)(void *)> text(softnode_snapshot_json(), std::free);
    return text ? std::optional<std::string>(text.get()) : std::nullopt;
}

bool timing_settled(uint32_t milliseconds)
{
    return softnode_timing_settle && softnode_timing_settle(milliseconds) == 1;
}

} // namespace kelctl
