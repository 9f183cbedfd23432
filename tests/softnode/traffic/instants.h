/*
 * instants.h - a length of virtual time that tests of shapers count in: at 8 kbit/s it is that of an octet.
 */
#pragma once

#include "softnode/traffic/virtual_clock.h"

namespace softnode
{

constexpr Instant millisecond = 1'000'000;

} // namespace softnode
