// Options of the live view: those of `watch`, and of `up` after --watch. What they mean is watch_options in
// jobs/watch.h.
#pragma once

#include "kelctl/language/command.h"

#include <vector>

namespace kelctl
{

std::vector<argument> watch_arguments();

} // namespace kelctl
