// The own MP id: which processor this is. The library reads it from the environment variable MPID, and keeps the first
// one that it finds there for as long as the process lives.
#pragma once

#include <cstdint>

namespace kelctl
{

// What MPID says, read as the library reads it. 0: none.
uint8_t own_mp_id();

// Makes it the one that the library finds. False, and nothing changes, when the process has another one for good.
bool adopt_mp_id(uint8_t id);

// From now on the process has the one that MPID says, if it says one: the library was called, and may have read it.
void keep_mp_id();

} // namespace kelctl
