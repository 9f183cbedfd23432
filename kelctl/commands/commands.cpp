// The program's table as a whole: the groups, and the rows of all families in the order in which help lists them. The
// rows themselves are in commands_*.cpp.
#include "kelctl/commands/commands.h"

#include <algorithm>
#include <iterator>

namespace kelctl
{
namespace
{

constexpr command_group groups[] = {
    {"ebcom", "the EBCOM service: parameters, interface, paths, queues, counters"},
    {"pcep", "PCEPs, packet communication end points"},
    {"group", "multicast groups of PCEPs"},
    {"traffic", "virtual traffic of the software accelerator"},
    {"time", "virtual time of the software accelerator"},
    {"trace", "the library's trace messages"},
    {"node", "the software accelerator as a whole"},
    {"fault", "the software accelerator's faults"},
};

// Made once: rows refer to nothing that changes while the program runs.
std::vector<command> all_rows()
{
    std::vector<command> all;
    for (const auto &family :
         {node_file_commands, held_node_commands,  change_commands,      table_commands,   session_commands,
          parameter_commands, ebcom_commands,      path_commands,        pcep_commands,    group_commands,
          list_commands,      statistics_commands, watch_commands,       traffic_commands, replay_commands,
          time_commands,      trace_commands,      accelerator_commands, fault_commands,   sweep_commands})
        std::ranges::move(family(), std::back_inserter(all));
    return all;
}

} // namespace

const command_table &commands()
{
    static const command_table all(all_rows(), {std::begin(groups), std::end(groups)});
    return all;
}

} // namespace kelctl
