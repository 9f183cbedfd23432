// The own MP id: the number of this processor, 1 to 255. The library reads it from the environment variable MPID and
// keeps the first one that it finds until the process ends; so node files with different ids need different processes.
#pragma once

#include <cstdint>
#include <string>

namespace kelctl
{

// The number in MPID, parsed as the library parses it. 0: none.
uint8_t own_mp_id();

// What is wrong with MPID; empty: it is not set, or an MP id.
std::string wrong_mp_id();

// Sets MPID, for the library to find. False, with nothing changed, when the process already keeps another id.
bool adopt_mp_id(uint8_t id);

// Call it after each call of the library, which may have read MPID: from here on the process keeps that id, if there
// is one.
void keep_mp_id();

} // namespace kelctl
