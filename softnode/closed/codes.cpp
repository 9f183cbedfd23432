/*
 * codes.cpp - the table of codes.h.
 */
#include "softnode/closed/codes.h"

#include "softnode/instance/closed_call.h"

#include <array>

namespace softnode
{

namespace
{

struct Codes {
    ork_rc driver_kit;
    std::uint32_t companion;
};

/* Indexed by Refusal. */
constexpr std::array<Codes, 8> codes{{
    {ORK_OK, KEL_RC_OK},
    {ORK_INVAL, KEL_RC_OUT_OF_RANGE},
    {ORK_NOTAVAIL, KEL_RC_NOT_FOUND},
    {ORK_AGAIN, KEL_RC_IN_USE},
    {ORK_NOPORT, KEL_RC_OUT_OF_RANGE},
    {ORK_OUTOFRANGE, KEL_RC_LIMIT},
    {ORK_NODOMAIN, KEL_RC_FAILED},
    {ORK_SHUTDOWN, KEL_RC_FAILED},
}};
static_assert(codes.size() == Refusal::shut_down + 1);

} // namespace

ork_rc driver_kit_code(Refusal refusal)
{
    return codes[refusal].driver_kit;
}

std::uint32_t companion_code(Refusal refusal)
{
    return codes[refusal].companion;
}

template <> std::int32_t no_memory_code()
{
    return driver_kit_code(full);
}

template <> std::uint32_t no_memory_code()
{
    return companion_code(full);
}

} // namespace softnode
