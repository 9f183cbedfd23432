// The program's own commands: its families of rows, and the table that commands.cpp makes of them. To add a command,
// add a row to its family; to add a family, also its name here and in commands.cpp.
#pragma once

#include "kelctl/language/command.h"

#include <vector>

namespace kelctl
{

// Lives as long as the program, as invocations refer to it.
const command_table &commands();

std::vector<command> node_file_commands();   // up, check, plan
std::vector<command> held_node_commands();   // nodes of other processes
std::vector<command> change_commands();      // export, diff, apply
std::vector<command> table_commands();       // ports, codes, limits
std::vector<command> session_commands();     // run, shell, help, exit, quit
std::vector<command> parameter_commands();   // MP id, parameters, limits of the EBCOM service
std::vector<command> ebcom_commands();       // the service: interface, start, timestamp, scheduler tree
std::vector<command> path_commands();        // paths, shapers, schedulers, handles
std::vector<command> pcep_commands();        // PCEPs
std::vector<command> group_commands();       // multicast groups of them
std::vector<command> list_commands();        // what exists of each kind
std::vector<command> statistics_commands();  // counters of everything
std::vector<command> watch_commands();       // counters as they change
std::vector<command> traffic_commands();     // traffic of the software accelerator
std::vector<command> replay_commands();      // captures through a node
std::vector<command> time_commands();        // its virtual time
std::vector<command> trace_commands();       // messages, trace point, abort
std::vector<command> accelerator_commands(); // snapshot, graph, reset of the software accelerator
std::vector<command> fault_commands();       // its fault rules
std::vector<command> sweep_commands();       // every fault of a script

} // namespace kelctl
