// The own MP id: which processor this is. The library reads it from the environment variable MPID, and keeps the first
// one that it finds there for as long as the process lives.
#pragma once

#include <cstdint>

namespace kelctl
{

// What MPID says, read as the library reads it. 0: none.
uint8_t own_mp_id();

// Makes it the one that the library finds. False, and nothing changes, when a node with another one was brought up before.
bool adopt_mp_id(uint8_t id);

} // namespace kelctl
