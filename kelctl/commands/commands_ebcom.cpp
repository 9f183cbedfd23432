// Rows of the EBCOM service: its interface, start and stop, the timestamp offset, the scheduler tree. Its parameters
// are in commands_parameters.cpp, its paths in commands_path.cpp, its counters in commands_statistics.cpp.
#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/commands/commands.h"
#include "kelctl/session/session.h"
#include "kelctl/values/limits.h"

#include <limits>

namespace kelctl
{
namespace
{

constexpr range cycles_range = {std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max(),
                                "signed 64 bits"};

result create_interface(const invocation &asked, session &session)
{
    kel_vsi_t vsi = 0;
    uint16_t out = 0;
    result done =
        session.call(asked, kel_core_ic_ebcom_interface_create, parameter::output(vsi), parameter::output(out));
    if (done.code == 0)
        done.shown = {{"vsi", vsi}};
    return done;
}

// From the first start on, a timestamp thread runs, for which snapshots wait.
result start(const invocation &asked, session &session)
{
    result done = session.call(asked, kel_core_ic_ebcom_start);
    session.timed = session.timed || done.code == 0;
    return done;
}

// A stop forgets the library's queues whatever it returns, so the session forgets the paths, too.
template <uint32_t (*Function)()> result stop(const invocation &asked, session &session)
{
    session.paths.clear();
    return session.call(asked, Function);
}

result convert_offset(const invocation &asked, session &session)
{
    int64_t offset = 0;
    result done = session.call(asked, kel_ic_ebcom_cycles_to_ork_timestamp_offset,
                               parameter::value("cycles", asked.given.number<int64_t>("--cycles")),
                               parameter::value("frequency", asked.given.number<uint32_t>("--frequency")),
                               parameter::output(offset));
    done.shown = {{"ork_timestamp_offset", offset}};
    return done;
}

} // namespace

std::vector<command> ebcom_commands()
{
    return {
        {.name = "ebcom interface create",
         .variants = {{"kel_core_ic_ebcom_interface_create", create_interface}},
         .help = "Create the EBCOM interface",
         .undo = "ebcom interface delete",
         .makes = {.one = "interface", .undone = "deleted"},
         .failure_leaves_something = true},
        {.name = "ebcom interface delete",
         .variants = {{"kel_core_ic_ebcom_interface_delete", call_plainly<kel_core_ic_ebcom_interface_delete>}},
         .help = "Delete the EBCOM interface"},
        {.name = "ebcom start",
         .variants = {{"kel_core_ic_ebcom_start", start}},
         .help = "Start the service: timestamp thread and scheduler tree",
         .undo = "ebcom stop",
         .makes = {.one = "EBCOM service", .undone = "stopped"},
         .failure_leaves_something = true,
         .starts = "EBCOM service"},
        {.name = "ebcom stop",
         .variants = {{"kel_core_ic_ebcom_stop", stop<kel_core_ic_ebcom_stop>}},
         .help = "Stop the service: release queues and schedulers",
         .details = "Remove all paths first: after a stop, nothing can delete those left in the driver kit."},
        {.name = "ebcom timestamp offset",
         .variants = {{"kel_ic_ebcom_cycles_to_ork_timestamp_offset", convert_offset}},
         .help = "Convert a timing-unit reading into a timestamp offset",
         .arguments = {{.name = "--cycles", .kind = kind::number(cycles_range), .help = "cycle count of the reading"},
                       {.name = "--frequency", .kind = kind::number(dword_range), .help = "clock frequency"}},
         .example = "ebcom timestamp offset --cycles 40 --frequency 250000"},
        {.name = "ebcom qos init",
         .variants = {{"kel_ic_ebcom_init_qos", call_plainly<kel_ic_ebcom_init_qos>}},
         .help = "Build the scheduler tree (one step of the start)",
         .undo = "ebcom qos deinit",
         .makes = {.one = "scheduler tree", .undone = "released"},
         .failure_leaves_something = true,
         .starts = "EBCOM service"},
        {.name = "ebcom qos deinit",
         .variants = {{"kel_ic_ebcom_deinit_qos", stop<kel_ic_ebcom_deinit_qos>}},
         .help = "Release queues and schedulers (one step of the stop)"},
    };
}

} // namespace kelctl
