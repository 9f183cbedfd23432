// `kelctl shell`: commands as they are typed, or as they come through a pipe.
#pragma once

#include "kelctl/result.h"
#include "kelctl/session.h"

namespace kelctl
{

// The handler of the command.
result shell(const invocation &asked, session &session);

} // namespace kelctl
