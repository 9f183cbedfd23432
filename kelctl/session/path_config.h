// The library's record of a path, from the arguments of its command.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/language/arguments.h"

namespace kelctl
{

// Of a path or a shaper that is added, or removed: those have no shaping.
kel_ebcom_path_config path_of(const arguments &given);

} // namespace kelctl
