// What completion offers of the session's node: addresses, ids and handles that commands used, or that exist. The
// grammar asks for them through language/known_words.h.
#pragma once

#include "kelctl/language/known_words.h"
#include "kelctl/session/session.h"

namespace kelctl
{

// What exists is known on the software accelerator only.
known_words known_on_node(const session &session);

} // namespace kelctl
