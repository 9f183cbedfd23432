// `kelctl up`: a node brought up from its file, shown, and taken down.
#pragma once

#include "kelctl/session/result.h"
#include "kelctl/session/session.h"

namespace kelctl
{

// The handler of the command.
result up(const invocation &asked, session &session);

} // namespace kelctl
