/*
 * fuzz.cpp - the fuzz target of the software accelerator: every closed function and every control function, with
 * handles, records and texts made of the input's octets. Whatever a caller hands in is refused or taken, and never
 * followed to where it must not be.
 *
 * An input is a list of calls: an octet that chooses one, and then what its arguments take.
 */
#include "caller.h"

#include "softnode/softnode.h"

#include <vector>

namespace
{

std::vector<Step> all_steps()
{
    std::vector<Step> steps;
    for (const auto library : {driver_kit_steps(), companion_steps(), timing_unit_steps(), control_steps()})
        steps.insert(steps.end(), library.begin(), library.end());
    return steps;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *octets, std::size_t count)
{
    static const std::vector<Step> steps = all_steps();
    softnode_reset();
    Caller caller(Input(octets, count));
    while (!caller.input.ended())
        steps[caller.input.below(steps.size())](caller);
    return 0;
}
