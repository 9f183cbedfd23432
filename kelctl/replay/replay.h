// `kelctl traffic replay`: a node brought up from its file, a capture sent through it, what left it captured again.
#pragma once

#include "kelctl/results/result.h"
#include "kelctl/session/session.h"

namespace kelctl
{

// The handler of the command.
result replay(const invocation &asked, session &session);

} // namespace kelctl
