// Where lines that were typed are kept from one shell to the next.
#pragma once

#include <string>

namespace kelctl
{

// $XDG_STATE_HOME/kelctl/history, or ~/.local/state/kelctl/history. Created when it is not there, for its owner only.
// Empty when it cannot be: then nothing is kept.
std::string history_file();

} // namespace kelctl
