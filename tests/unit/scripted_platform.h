// The closed libraries as a script: every closed function writes its call into the transcript and returns what the test
// said, success if it said nothing. It is defined in the test program itself and so takes the place of any library's.
//
// The same goes for the few functions of the system and of GLib that the library must cope with when they fail
// (pthread_create, pthread_setname_np, malloc of 6 bytes, g_hash_table_new_full) or that make text (strerror, syscall
// for the thread's number): those act for the library only. And it goes for exported operations of the library that its
// other operations call and that never fail by themselves (kel_ic_pcep_get_location_and_type_from_branch,
// kel_ic_ebcom_deinit_qos, kel_core_ic_pcep_create_queue_and_scheduler_for_multicast): fail() makes them fail, unseen
// in the transcript; else they are the real ones.
#pragma once

#include "platform/kel_init.h"
#include "platform/ork.h"
#include "platform/vorn_tu.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace scripted
{

// What the closed functions hand out.
inline void *const sys_handle = reinterpret_cast<void *>(0x5157);
inline void *const ork_handle = reinterpret_cast<void *>(0x0121);
inline constexpr uint64_t ehsfp_target = 0xE45F;
inline constexpr uint16_t eth_dev_id = 7;
inline constexpr kel_vsi_t vsi = 12;

// The n-th scheduler and queue that are created get these, counted from 1.
void *scheduler(uint32_t n);
void *queue(uint32_t n);

// From the call-th call on, counted from now and from 1, so many calls that the test's own thread makes of the function
// return the result (or fail, where the result is no number: malloc and g_hash_table_new_full return null).
constexpr uint32_t every = UINT32_MAX;
void fail(const std::string &function, int64_t result, uint32_t call = 1, uint32_t times = 1);

// The same for the calls that the timestamp threads make, all of them counted together.
void fail_on_thread(const std::string &function, int64_t result, uint32_t call = 1, uint32_t times = 1);

// From now on each call that the test's own thread makes of the function does this first.
void on_call(const std::string &function, std::function<void()> action);

// Forgets what was said to fail, and all calls and records so far: counting begins again.
void renew();

// How often the function was called, on any thread.
uint32_t calls_of(const std::string &function);

// A record as it lies in memory.
using octets = std::vector<uint8_t>;

// The record that the function got last.
octets record_of(const std::string &function);

// All the records that the function got, oldest first.
std::vector<octets> records_of(const std::string &function);

// Fills the stack that the next call will use, so that a record in there is zero only where it was made so.
void soil_stack();

// Where the latest classification was to write the type, and where the driver kit's latest path record lay.
const void *last_type_place();
const void *last_path_place();

// The formats of all message bodies that the calling thread has formatted.
std::set<std::string> formats();

// What every MAC address is classified as from now on; nothing: as the library does it.
void classify_as(std::optional<uint32_t> location);

// What ork_qos_queue_get() fills in from now on; {0, 0, unshaped} at first.
void set_queue_record(const ork_qos_queue &record);

// What vorn_tu_get_nputimeoffset() fills in from now on; 10 cycles at 250,000 at first.
void set_reading(const vorn_tu_nputimeoffset &reading);

// Wakes the longest waiting vorn_tu_wait_event(), now or later, with an event.
void post_event(uint32_t type, int32_t domain);

// Wakes the longest waiting vorn_tu_wait_event(), now or later, with a failure; with 0, a success without an event.
void fail_wait(int32_t result);

// Waits until so many threads wait for an event and none is left to take; a test failure when that does not come about.
void wait_for_waiting_threads(uint32_t threads);

// What the restart service was asked last.
struct restart_request {
    uint32_t line;
    std::string file;
    uint32_t one;
    std::string reason;
    uint32_t zero;
    void *null;
};
restart_request last_restart_request();

} // namespace scripted
