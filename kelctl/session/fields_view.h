// Named values laid out for people: a line for each, lists of rows as tables.
#pragma once

#include "kelctl/session/result.h"
#include "kelctl/terminal/terminal.h"

#include <string>

namespace kelctl
{

// Names lose their underscores. Every line ends with a line end; no fields are no text.
std::string fields_text(const fields &shown, const painter &paint);

} // namespace kelctl
