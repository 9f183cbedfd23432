// One line of a script: an exported operation with its arguments, or a change of what stands around the library, and
// the faults that its outside calls meet. Both the model and the library run scripts; nothing here knows either.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"
#include "platform/vorn_tu.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace proof
{

// In the order of the table in step.cpp.
enum class operation : uint8_t {
    ebcom_start,
    ebcom_stop,
    convert_cycles,
    global_param_set,
    capabilities_get,
    interface_create,
    interface_delete,
    queue_handle_get,
    scheduler_handle_get,
    init_qos,
    deinit_qos,
    add_shaper,
    remove_shaper,
    path_add,
    path_rem,
    port_to_mac_chan,
    qos_handle_dump,
    global_stats,
    global_text,
    global_text_second_name,
    queue_stats,
    queue_text,
    queue_text_2,
    queue_text_second_name,
    set_burst_stats,
    classify,
    pcep_start,
    pcep_stop,
    pcep_dump,
    multicast_hook,
    pcep_add,
    pcep_rem,
    group_add,
    group_rem,
    member_add,
    member_rem,
    pcep_driver_kit_stats,
    pcep_stats,
    pcep_stats_second_name,
    pcep_text,
    pcep_text_second_name,
    tracepoint,
    abort,
    last_exported = abort,
    // What stands around the library.
    timing_event,
    timing_failure,
    end_threads,
    set_reading,
    set_queue_record,
    set_mpid,
    classify_all_as,
    count
};

constexpr auto operation_count = static_cast<size_t>(operation::count);

// The call-th call of the function within the step, counted from 1, and the following ones up to `times` of them.
struct fault {
    std::string function;
    uint32_t call = 1;
    int64_t result = 0;
    uint32_t times = 1;
};

struct step {
    operation what = operation::capabilities_get;
    kel_ebcom_path_config path = {}; // of a look-up and of statistics: its MAC alone
    kel_pcep_config pcep = {};
    uint32_t id = 0;       // PCEP or group; first of two parameters
    uint32_t other_id = 0; // member; second of two parameters
    uint32_t format = 0;   // also what the two bytes of settings are made from
    uint32_t length = 512; // of the text buffer
    vorn_tu_nputimeoffset reading = {};
    vorn_tu_event event = {};              // a failure has its code in the type
    ork_qos_queue queue = {};              // what the driver kit says of every queue
    std::optional<std::string> mpid = {};  // the environment variable
    std::optional<uint32_t> location = {}; // what every address is classified as
    std::vector<fault> faults = {};        // of the calling thread's calls
    std::vector<fault> thread_faults = {}; // of the timestamp threads' calls
};

using script = std::vector<step>;

// As a person would write it down: "path_add 02:00:00:02:00:01 port 6 unshaped  [ork_qos_queue_get call 1: -4]".
std::string text_of(const step &step);
std::string text_of(const script &steps);

std::string text_of_mac(const uint8_t *mac);

// printf into a string.
[[gnu::format(printf, 1, 2)]] std::string format(const char *format, ...);

} // namespace proof
