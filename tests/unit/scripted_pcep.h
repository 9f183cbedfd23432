// The PCEP side of the scripted platform: the handles that its driver kit hands out, and the multicast hook.
#pragma once

#include "platform/kel_init.h"

#include <cstdint>
#include <string>

namespace scripted
{

// How the transcript shows a driver-kit handle: "pcep n" and "group n" are those of the n-th PCEP and the n-th
// multicast group created, counted from 1, and "refused" is what a refused create leaves. All are wider than 32 bits.
std::string handle_text(uint64_t handle);

// What kel_core_ic_pcep_create_queue_and_scheduler_for_multicast() was called with last.
struct hook_call {
    kel_attach_info attach;  // as it was then
    kel_attach_info *record; // the library's own, which lives on
    uint64_t queue_handle;
    uint64_t scheduler_handle;
};
hook_call last_hook_call();

// What that function writes from now on; the real one writes nothing.
void set_hook_handles(uint64_t queue_handle, uint64_t scheduler_handle);

} // namespace scripted
