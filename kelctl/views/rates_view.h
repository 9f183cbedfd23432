// Rates as a block of text of 80 columns, and as named values.
#pragma once

#include "kelctl/node/rates.h"
#include "kelctl/session/result.h"
#include "kelctl/terminal/terminal.h"

#include <cstdint>
#include <string>

namespace kelctl
{

// `time` is the virtual time since the watch began, in nanoseconds.
std::string rates_view(const rates &shown, uint64_t time, const painter &paint);

fields rates_fields(const rates &shown, uint64_t time);

} // namespace kelctl
