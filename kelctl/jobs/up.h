// `kelctl up`: brings a node up from its file, shows it, watches or holds it, and takes it down. The steps are
// bring_up.h, the live view is watch.h.
#pragma once

#include "kelctl/results/result.h"
#include "kelctl/session/session.h"

namespace kelctl
{

// The handler of the command.
result up(const invocation &asked, session &session);

} // namespace kelctl
