// The program's exit status. A higher one is worse, so the status of several commands is their std::max(). Scripts rely
// on the numbers.
#pragma once

namespace kelctl
{

// exit_operation_failed also after an interruption; exit_wrong_input before anything was started.
enum exit_status { exit_done = 0, exit_operation_failed = 1, exit_wrong_input = 2 };

} // namespace kelctl
