// Has GoogleTest show documents as their JSON.
#pragma once

#include "notation/json.h"

#include <ostream>

namespace notation
{

inline void PrintTo(const document &shown, std::ostream *out)
{
    *out << to_json(shown);
}

} // namespace notation
