// `kelctl shell`: commands as they are typed, or as they come through a pipe.
#pragma once

#include "kelctl/results/result.h"
#include "kelctl/session/session.h"

namespace kelctl
{

// The handler of the command.
result shell(const invocation &asked, session &session);

} // namespace kelctl
