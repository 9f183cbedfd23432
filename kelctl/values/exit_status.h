// What the program's exit status tells.
#pragma once

namespace kelctl
{

enum exit_status { exit_done = 0, exit_operation_failed = 1, exit_wrong_input = 2 };

} // namespace kelctl
